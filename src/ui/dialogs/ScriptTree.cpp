#include "ui/dialogs/ScriptTree.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QVBoxLayout>
#include <algorithm>
#include <vector>

#include "ui/dialogs/ScriptWords.h"

namespace tessaloom {

namespace {

constexpr int PathRole = Qt::UserRole;

QString Text(std::u16string_view name) {
    return QString::fromUtf16(name.data(), static_cast<qsizetype>(name.size()));
}

QString UseOf(const SCMember& member) {
    if (ScriptWords::Part(member)) return member.minArguments > 0 ? "One of several objects" : "An object";
    if (!member.get) return "Can be set";
    return member.let || member.set ? "Can be read and set" : "Can be read or called";
}

}  // namespace

ScriptTree::ScriptTree(QWidget* parent) : QWidget(parent), filter_(new QLineEdit), tree_(new QTreeWidget) {
    filter_->setObjectName("filter");
    filter_->setAccessibleName("Show members with this in their name");
    filter_->setPlaceholderText("Part of a name");
    filter_->setClearButtonEnabled(true);
    tree_->setObjectName("objects");
    tree_->setAccessibleName("Objects of scripts");
    tree_->setHeaderHidden(true);
    tree_->setExpandsOnDoubleClick(false);
    auto* hint = new QLabel("A double click or Enter puts the name into the script.");
    hint->setWordWrap(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(filter_);
    layout->addWidget(tree_, 1);
    layout->addWidget(hint);

    auto* root = new QTreeWidgetItem(tree_, {"Tessaloom"});
    root->setData(0, PathRole, "Tessaloom");
    AddMembers(root, SCKind::Main);
    root->setExpanded(true);
    connect(filter_, &QLineEdit::textChanged, this, &ScriptTree::Filter);
    connect(tree_, &QTreeWidget::itemDoubleClicked, this,
            [this](QTreeWidgetItem* item) { Q_EMIT Chosen(item->data(0, PathRole).toString()); });
}

void ScriptTree::AddMembers(QTreeWidgetItem* owner, SCKind kind) {
    std::vector<const SCMember*> members;
    for (const SCMember& member : ClassOf(kind).members) members.push_back(&member);
    std::ranges::sort(members, [](const SCMember* a, const SCMember* b) {
        return Text(a->name).compare(Text(b->name), Qt::CaseInsensitive) < 0;
    });
    for (const SCMember* member : members) {
        const std::optional<SCKind> part = ScriptWords::Part(*member);
        const QString name = Text(member->name) + (part && member->minArguments > 0 ? "(1)" : "");
        auto* item = new QTreeWidgetItem(owner, {name});
        item->setData(0, PathRole, owner->data(0, PathRole).toString() + '.' + name);
        item->setToolTip(0, UseOf(*member));
        if (part) AddMembers(item, *part);
    }
}

void ScriptTree::Filter(const QString& text) {
    QTreeWidgetItem* root = tree_->topLevelItem(0);
    for (QTreeWidgetItemIterator each(root); *each; ++each) {
        (*each)->setHidden(!text.isEmpty());
        (*each)->setExpanded(*each == root);
    }
    root->setHidden(false);
    if (text.isEmpty()) return;
    for (QTreeWidgetItemIterator each(root); *each; ++each) {
        if (!(*each)->text(0).contains(text, Qt::CaseInsensitive)) continue;
        (*each)->setHidden(false);
        for (QTreeWidgetItem* above = (*each)->parent(); above; above = above->parent()) {
            above->setHidden(false);
            above->setExpanded(true);
        }
    }
}

// Enter may not reach the window, whose default button it would press.
void ScriptTree::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) return QWidget::keyPressEvent(event);
    if (const QTreeWidgetItem* item = tree_->currentItem(); item && tree_->hasFocus())
        Q_EMIT Chosen(item->data(0, PathRole).toString());
}

}  // namespace tessaloom
