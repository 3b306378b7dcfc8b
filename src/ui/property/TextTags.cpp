#include "ui/property/TextTags.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "ui/property/TagWords.h"
#include "ui/property/TaggedTextEdit.h"
#include "ui/shared/SetupWindow.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

namespace {

enum Column { TagColumn, ValueColumn, MeaningColumn };

class frmTextTags : public SetupWindow {
public:
    frmTextTags(Workspace& workspace, QWidget* parent)
        : SetupWindow(workspace, QStringLiteral("frmTextTags"), tr("Text Tags"), parent) {
        MakeSearch();
        MakeList();
        hint_->setObjectName(QStringLiteral("hint"));
        hint_->setWordWrap(true);
        Contents()->addWidget(hint_);

        ButtonRow()->setStandardButtons(QDialogButtonBox::Close);
        put_ = ButtonRow()->addButton(tr("&Insert"), QDialogButtonBox::ActionRole);
        put_->setObjectName(QStringLiteral("insert"));
        put_->setDefault(true);
        connect(put_, &QPushButton::clicked, this, [this] { Put(list_->currentItem()); });
        connect(&workspace, &Workspace::Pulse, this, [this] {
            if (isVisible()) Refresh();
        });
        resize(fontMetrics().averageCharWidth() * 130, fontMetrics().lineSpacing() * 36);
        Refresh();
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        // The arrows walk the list while the search field has the focus.
        if (object == search_ && event->type() == QEvent::KeyPress) {
            const int key = static_cast<QKeyEvent*>(event)->key();
            if (key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown)
                return QApplication::sendEvent(list_, event);
        }
        return SetupWindow::eventFilter(object, event);
    }

private:
    void MakeSearch() {
        search_ = new QLineEdit;
        search_->setObjectName(QStringLiteral("search"));
        search_->setClearButtonEnabled(true);
        search_->setPlaceholderText(tr("Search tags, values and meanings"));
        search_->setAccessibleName(tr("Search"));
        search_->installEventFilter(this);
        connect(search_, &QLineEdit::textChanged, this, [this] { Filter(); });
        Contents()->addWidget(search_);
    }

    void MakeList() {
        list_ = new QTreeWidget;
        list_->setObjectName(QStringLiteral("tags"));
        list_->setAccessibleName(tr("Tags"));
        list_->setHeaderLabels({tr("Tag"), tr("Value now"), tr("Meaning")});
        list_->setRootIsDecorated(true);
        list_->setUniformRowHeights(true);
        list_->setAlternatingRowColors(true);
        for (const TagWords::Heading heading : TagWords::Headings()) AddHeading(heading);
        list_->expandAll();
        list_->resizeColumnToContents(TagColumn);
        list_->header()->resizeSection(ValueColumn, fontMetrics().averageCharWidth() * 26);
        connect(list_, &QTreeWidget::itemActivated, this, &frmTextTags::Put);
        connect(list_, &QTreeWidget::currentItemChanged, this, [this] { ShowHint(); });
        Contents()->addWidget(list_, 1);
    }

    void AddHeading(TagWords::Heading heading) {
        auto* group = new QTreeWidgetItem(list_, {TagWords::Title(heading)});
        group->setFirstColumnSpanned(true);
        group->setFlags(Qt::ItemIsEnabled);
        QFont bold = list_->font();
        bold.setBold(true);
        group->setFont(TagColumn, bold);
        for (const TagWords::Entry& entry : TagWords::All())
            if (entry.heading == heading) {
                auto* row = new QTreeWidgetItem(group, {entry.tag, {}, entry.meaning});
                row->setToolTip(MeaningColumn, entry.meaning);
            }
    }

    template <typename Do>
    void ForEachTag(Do action) {
        for (int i = 0; i < list_->topLevelItemCount(); ++i)
            for (int j = 0; j < list_->topLevelItem(i)->childCount(); ++j)
                action(*list_->topLevelItem(i)->child(j));
    }

    void Refresh() {
        ForEachTag([this](QTreeWidgetItem& row) {
            if (row.isHidden() || !row.parent()->isExpanded()) return;
            const QString value = TheWorkspace().Portfolio()
                                      ? TagWords::Expanded(TheWorkspace(), row.text(TagColumn))
                                      : QString();
            if (row.text(ValueColumn) == value) return;
            row.setText(ValueColumn, value);
            row.setToolTip(ValueColumn, value);
        });
        ShowHint();
    }

    void Filter() {
        const QString sought = search_->text().trimmed();
        const auto holds = [&](const QTreeWidgetItem& row, int column) {
            return row.text(column).contains(sought, Qt::CaseInsensitive);
        };
        QTreeWidgetItem* first = nullptr;
        ForEachTag([&](QTreeWidgetItem& row) {
            const bool found = holds(row, TagColumn) || holds(row, ValueColumn) ||
                               holds(row, MeaningColumn) || holds(*row.parent(), TagColumn);
            row.setHidden(!found);
            if (found && !first) first = &row;
        });
        for (int i = 0; i < list_->topLevelItemCount(); ++i) {
            QTreeWidgetItem* group = list_->topLevelItem(i);
            bool any = false;
            for (int j = 0; j < group->childCount(); ++j) any = any || !group->child(j)->isHidden();
            group->setHidden(!any);
        }
        list_->setCurrentItem(sought.isEmpty() ? nullptr : first);
        Refresh();
    }

    void Put(QTreeWidgetItem* row) {
        if (!row || !row->parent()) return;
        const QString tag = row->text(TagColumn);
        if (TaggedTextEdit* editor = TaggedTextEdit::LastUsed())
            editor->InsertTag(tag);
        else
            QApplication::clipboard()->setText(tag);
        done_ = TaggedTextEdit::LastUsed() ? tr("%1 was inserted.").arg(tag)
                                           : tr("%1 was copied to the clipboard.").arg(tag);
        ShowHint();
    }

    void ShowHint() {
        const QTreeWidgetItem* row = list_->currentItem();
        const bool chosen = row && row->parent() && !row->isHidden();
        const bool editor = TaggedTextEdit::LastUsed() != nullptr;
        put_->setEnabled(chosen);
        put_->setText(editor ? tr("&Insert") : tr("&Copy"));
        QString hint = editor ? tr("Double-click a tag to insert it into the text.")
                              : tr("Double-click a tag to copy it, then paste it into a text.");
        if (!search_->text().isEmpty() && !list_->currentItem()) hint = tr("No tag matches the search.");
        if (row != doneRow_) done_.clear();
        doneRow_ = row;
        hint_->setText(done_.isEmpty() ? hint : done_);
    }

    QLineEdit* search_ = nullptr;
    QTreeWidget* list_ = nullptr;
    QLabel* hint_ = new QLabel;
    QPushButton* put_ = nullptr;
    QString done_;                              ///< What was done last; "" once another tag is chosen.
    const QTreeWidgetItem* doneRow_ = nullptr;  ///< Compared only.
};

}  // namespace

void ShowTextTags(Workspace& workspace, QWidget* parent) {
    SetupWindow::ShowOnly(QStringLiteral("frmTextTags"), [&] { return new frmTextTags(workspace, parent); });
}

}  // namespace tessaloom
