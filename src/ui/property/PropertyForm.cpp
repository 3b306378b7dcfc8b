#include "ui/property/PropertyForm.h"

#include <QApplication>
#include <QDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QScrollBar>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "core/modNumbers.h"
#include "platform/Platform.h"
#include "ui/property/PropertyEditor.h"
#include "ui/property/PropertyGroup.h"
#include "ui/property/editors/NumberText.h"
#include "ui/property/editors/Parts.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

using Editors::Words;

namespace {

/// A form of at least so many rows has a line to search them.
constexpr std::size_t LongForm = 16;

/// Which groups are folded is remembered for all forms, by their headings.
constexpr std::string_view FoldedGroups = "FoldedGroups";
constexpr QChar HeadingSeparator = '|';

/// Hands on to the set that is shown now, so that the editors outlive a change between things of one kind.
class ShownSet final : public PropertySet {
public:
    std::shared_ptr<PropertySet> inner;

    std::span<const Property> Properties() const override {
        return inner ? inner->Properties() : std::span<const Property>();
    }
    bool Exists() const override { return inner && inner->Exists(); }
    std::string Get(std::size_t row) const override { return inner ? inner->Get(row) : std::string(); }
    KeyFault Set(std::size_t row, const std::string& text) override {
        const auto kept = inner;  // another may be shown meanwhile
        return kept ? kept->Set(row, text) : KeyFault::None;
    }
    int CanvasSlot() const override { return inner ? inner->CanvasSlot() : 0; }
    Schedule* ScheduleOf(std::size_t row) const override { return inner ? inner->ScheduleOf(row) : nullptr; }
    std::optional<LayerId> Layer() const override { return inner ? inner->Layer() : std::nullopt; }
};

/// "1" and "1.0" are one value.
bool SameValue(const std::string& a, std::string_view b) {
    double first = 0, second = 0;
    return a == b || (modNumbers::TryDblNI(a, first) && modNumbers::TryDblNI(b, second) && first == second);
}

/// The editors of one serve the other, too. Defaults may differ.
bool SameKind(std::span<const Property> a, std::span<const Property> b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const Property& x, const Property& y) {
        return x.name == y.name && x.label == y.label && x.group == y.group && x.kind == y.kind &&
               x.low == y.low && x.high == y.high;
    });
}

/// Tab goes from `first` through all of `page`, which was made later than its neighbours in the window.
void FollowInTabOrder(QWidget* first, QWidget* page) {
    std::vector<QWidget*> chain;
    for (QWidget* next = page->nextInFocusChain(); page->isAncestorOf(next); next = next->nextInFocusChain())
        if (next->focusPolicy() & Qt::TabFocus && !next->focusProxy()) chain.push_back(next);
    for (QWidget* next : chain) QWidget::setTabOrder(std::exchange(first, next), next);
}

/// Brings the page of tabs that holds `part` to the front.
void ShowPage(QWidget* part) {
    for (QWidget* page = part; page->parentWidget(); page = page->parentWidget())
        if (auto* tabs = qobject_cast<QTabWidget*>(page->parentWidget()->parentWidget()))
            tabs->setCurrentWidget(page);
}

bool Listed(std::string_view value, std::string_view list) {
    while (!list.empty()) {
        const std::size_t comma = list.find(',');
        if (list.substr(0, comma) == value) return true;
        list = comma == list.npos ? std::string_view() : list.substr(comma + 1);
    }
    return false;
}

/// "Change font size"; words in capitals keep them.
std::string StepName(const Property& property) {
    QString label = Words(property.label).remove('&');
    if (label.size() > 1 && !label[1].isUpper()) label[0] = label[0].toLower();
    return ("Change " + label).toStdString();
}

QString Objection(const Property& property, KeyFault fault, const std::string& text,
                  const UserLocale& locale) {
    switch (fault) {
        case KeyFault::None:
            return {};
        case KeyFault::NotABoolean:
            return "Must be on or off.";
        case KeyFault::NotANumber:
            return "Must be a number.";
        case KeyFault::NotAColour:
            return "Must be a colour such as #FF8800.";
        case KeyFault::NotATime:
            return "Must be a time such as 07:30:00.";
        case KeyFault::OutOfRange:
            break;
    }
    if (property.kind == PropertyKind::Switch) return "Could not be switched on.";
    double value = 0;
    const bool isNumber = modNumbers::TryDblNI(text, value);
    const QString outside = isNumber ? NumberText::OutsideRange(property, value, locale) : QString();
    return outside.isEmpty() ? "Is out of range; the nearest value was taken." : outside;
}

}  // namespace

struct PropertyForm::Parts {
    Workspace& workspace;
    ShownSet set;
    std::vector<PropertyRow> rows;
    std::vector<PropertyGroup*> groups;
    std::vector<std::string> found;  ///< The values when the set was shown.
    std::set<QString> folded;        ///< Headings of the groups that people folded.
    QLineEdit* search = nullptr;     ///< Above the rows; hidden for short forms.
    QLabel* gone = nullptr;
    QWidget* body = nullptr;  ///< Holds the groups; null while there is nothing to show.

    const Property& Description(std::size_t row) const { return set.Properties()[row]; }

    bool Relevant(const Property& property) const {
        if (property.relevantIf.empty()) return true;
        const auto row = set.Find(property.relevantIf);
        return !row || Listed(set.Get(*row), property.relevantValues);
    }

    std::string MergeKey(std::size_t row) const {
        std::string key(Description(row).name);
        if (const auto layer = set.Layer())
            key +=
                (layer->kind == LayerId::Kind::Text ? " text " : " graphic ") + std::to_string(layer->slot);
        return key;
    }

    void ReadFolded() {
        const QString list = QString::fromStdString(workspace.Remembered(FoldedGroups));
        for (const QString& heading : list.split(HeadingSeparator, Qt::SkipEmptyParts))
            folded.insert(heading);
    }

    void RememberFolded() const {
        QStringList list(folded.begin(), folded.end());
        workspace.Remember(FoldedGroups, list.join(HeadingSeparator).toStdString());
    }

    /// Shows the value of a row, its reset button and whether it matters.
    void RefreshRow(std::size_t row, bool always) {
        PropertyRow& shown = rows[row];
        const std::string value = set.Get(row);
        if (always || (value != shown.value && !shown.editor->Busy())) {
            if (!always) shown.Remark({});
            shown.editor->Show(value);
            shown.value = value;
        }
        const Property& property = Description(row);
        shown.SetResettable(!SameValue(value, property.fallback));
        shown.SetEnabled(Relevant(property));
    }

    void Refresh(bool always) {
        const bool exists = set.Exists();
        gone->setVisible(!exists);
        body->setEnabled(exists);
        if (!exists) return;
        for (PropertyGroup* group : groups)
            if (group->IsOpen() || always)
                for (std::size_t row = group->First(); row < group->End(); ++row) RefreshRow(row, always);
    }

    /// form: may go meanwhile, as what is set may run a script that shows a box.
    void Apply(std::size_t row, const std::string& text, const QPointer<PropertyForm>& form) {
        if (!set.Exists()) return;
        const Property& property = Description(row);
        const int slot = set.CanvasSlot();
        KeyFault fault = KeyFault::None;
        {
            HistoryStep step(slot > 0 ? workspace.HistoryOf(slot) : nullptr, StepName(property),
                             MergeKey(row));
            fault = set.Set(row, text);
        }
        if (!form || row >= rows.size()) return;
        PropertyRow& shown = rows[row];
        shown.value = set.Get(row);
        shown.Remark(Objection(property, fault, text, workspace.Services().locale));
        if (!shown.editor->Busy()) shown.editor->Show(shown.value);
        Refresh(false);
    }

    void Seal() {
        if (History* history = set.CanvasSlot() > 0 ? workspace.HistoryOf(set.CanvasSlot()) : nullptr)
            history->Seal();
    }

    /// What is typed is taken; choosers that are open close, as they were opened for what is shown now.
    void FinishEditing() {
        for (PropertyRow& row : rows) {
            if (row.editor->Busy()) row.editor->Finish();
            for (QDialog* chooser : row.editor->findChildren<QDialog*>()) chooser->reject();
        }
    }

    /// Shows the rows that have every word of `search`, all of them in open groups.
    void Search(const QString& text) {
        const QStringList words = text.split(' ', Qt::SkipEmptyParts);
        for (PropertyGroup* group : groups) {
            bool any = false;
            for (std::size_t row = group->First(); row < group->End(); ++row) {
                const Property& property = Description(row);
                const QString subject = Words(property.label).remove('&') + ' ' + Words(property.group) +
                                        ' ' + Words(property.tip);
                const bool matches = std::all_of(words.begin(), words.end(), [&](const QString& word) {
                    return subject.contains(word, Qt::CaseInsensitive);
                });
                rows[row].SetVisible(matches);
                any = any || matches;
            }
            group->setVisible(any);
            group->SetOpen(!words.isEmpty() || !folded.contains(group->Heading()));
        }
        if (set.Exists()) Refresh(false);
    }
};

PropertyForm::PropertyForm(Workspace& workspace, QWidget* parent)
    : QScrollArea(parent), parts_(new Parts{workspace, {}, {}, {}, {}, {}}) {
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);  // Tab goes from field to field
    parts_->ReadFolded();
    parts_->search = new QLineEdit(this);
    parts_->search->setObjectName("search");
    parts_->search->setPlaceholderText("Search settings");
    parts_->search->setAccessibleName("Search settings");
    parts_->search->setClearButtonEnabled(true);
    parts_->search->hide();
    connect(parts_->search, &QLineEdit::textChanged, this,
            [this](const QString& text) { parts_->Search(text); });
    connect(&workspace, &Workspace::Pulse, this, [this] {
        if (parts_->body && isVisible()) parts_->Refresh(false);
    });
    // The portfolio goes at once, but windows and their choosers only later.
    connect(&workspace, &Workspace::SetupMustClose, this, [this] { Show(nullptr); });
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget* from, QWidget* to) { FocusMoved(from, to); });
}

/// What goes with the window moves the focus, when there are no parts any more.
PropertyForm::~PropertyForm() {
    qApp->disconnect(this);
    for (const PropertyRow& row : parts_->rows) row.editor->disconnect(this);
    delete takeWidget();
}

void PropertyForm::Show(std::unique_ptr<PropertySet> set, const QString& emptyText) {
    Parts& parts = *parts_;
    if (parts.body) parts.FinishEditing();
    parts.Seal();
    const std::shared_ptr<PropertySet> before = std::exchange(parts.set.inner, std::move(set));
    const auto now = parts.set.Properties();
    if (now.empty()) {
        ShowEmpty(emptyText);
        return;
    }
    if (!parts.body || !before || !SameKind(before->Properties(), now)) Build();
    parts.found.clear();
    for (std::size_t row = 0; row < now.size(); ++row) {
        parts.found.push_back(parts.set.Get(row));
        parts.rows[row].Remark({});
        parts.rows[row].DescribeReset(now[row]);
    }
    parts.Refresh(true);
}

PropertySet* PropertyForm::Set() const { return parts_->set.inner.get(); }

void PropertyForm::Restore() {
    Parts& parts = *parts_;
    if (!parts.body || !parts.set.Exists()) return;
    const int slot = parts.set.CanvasSlot();
    {
        HistoryStep step(slot > 0 ? parts.workspace.HistoryOf(slot) : nullptr, "Restore");
        // Twice, as a setting may move another one that depends on it.
        for (int round = 0; round < 2; ++round)
            for (std::size_t row = 0; row < parts.found.size(); ++row)
                if (parts.set.Get(row) != parts.found[row]) parts.set.Set(row, parts.found[row]);
    }
    parts.Refresh(true);
}

QWidget* PropertyForm::EditorOf(std::string_view name) const {
    const auto row = parts_->body ? parts_->set.Find(name) : std::nullopt;
    return row ? parts_->rows[*row].editor : nullptr;
}

bool PropertyForm::TakeTyped() {
    if (!parts_->body || !parts_->set.Exists()) return true;
    for (std::size_t row = 0; row < parts_->rows.size(); ++row) {
        const QPointer<PropertyEditor> editor(parts_->rows[row].editor);
        editor->Finish();
        if (!editor) return true;  // the form went while what was taken showed a box
        if (!editor->isEnabled() || !editor->Mistaken()) continue;
        FocusOn(parts_->Description(row).name);
        return false;
    }
    return true;
}

void PropertyForm::FocusOn(std::string_view name) {
    QWidget* editor = EditorOf(name);
    if (!editor) return;
    parts_->search->clear();
    ShowPage(this);
    for (PropertyGroup* group : parts_->groups)
        if (group->isAncestorOf(editor)) group->SetOpen(true);
    ensureWidgetVisible(editor);
    editor->setFocus(Qt::OtherFocusReason);
    // What is typed replaces what was there, as after Tab.
    if (auto* text = editor->findChild<QPlainTextEdit*>()) text->selectAll();
}

void PropertyForm::Clear() {
    for (const PropertyRow& row : parts_->rows) row.editor->disconnect(this);
    parts_->rows.clear();
    parts_->groups.clear();
    parts_->body = nullptr;
    if (QWidget* old = takeWidget()) {
        old->hide();
        old->deleteLater();  // it may be one of its own editors that brought this about
    }
}

void PropertyForm::ShowEmpty(const QString& text) {
    Parts& parts = *parts_;
    Clear();
    parts.search->hide();
    setViewportMargins({});
    auto* label = new QLabel(text);
    label->setObjectName("empty");
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    label->setMargin(fontMetrics().height());
    label->setForegroundRole(QPalette::PlaceholderText);
    setMinimumWidth(0);
    setWidget(label);
}

void PropertyForm::Build() {
    Parts& parts = *parts_;
    Clear();
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    parts.gone =
        new QLabel(parts.set.Layer() ? "This layer is no longer there." : "This is no longer there.");
    parts.gone->setObjectName("gone");
    parts.gone->setWordWrap(true);
    parts.gone->hide();
    layout->addWidget(parts.gone);
    parts.body = new QWidget;
    auto* groups = new QVBoxLayout(parts.body);
    groups->setContentsMargins({});
    layout->addWidget(parts.body);
    layout->addStretch();

    const auto properties = parts.set.Properties();
    int labels = 0;
    for (std::size_t row = 0; row < properties.size(); ++row) {
        if (row == 0 || properties[row].group != properties[row - 1].group) {
            groups->addWidget(AddGroup(Words(properties[row].group), row));
        }
        parts.rows.push_back(parts.groups.back()->AddRow(
            properties[row], MakePropertyEditor(parts.workspace, parts.set, row, parts.groups.back())));
        labels = std::max(labels, parts.rows.back().LabelWidth());
        ConnectRow(row);
    }
    for (PropertyGroup* group : parts.groups) group->SetLabelWidth(labels);

    const bool isLong = properties.size() >= LongForm;
    parts.search->clear();
    parts.search->setVisible(isLong);
    setViewportMargins(0, isLong ? parts.search->sizeHint().height() : 0, 0, 0);
    setWidget(page);
    FollowInTabOrder(parts.search, page);
    setMinimumWidth(page->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width());
}

PropertyGroup* PropertyForm::AddGroup(const QString& heading, std::size_t firstRow) {
    Parts& parts = *parts_;
    auto* group = new PropertyGroup(heading, firstRow);
    group->SetOpen(!parts.folded.contains(heading));
    connect(group, &PropertyGroup::Folded, this, [this, heading](bool folded) {
        if (!parts_->search->text().isEmpty()) return;  // a search opens what it finds only for itself
        if (folded)
            parts_->folded.insert(heading);
        else
            parts_->folded.erase(heading);
        parts_->RememberFolded();
        if (!folded) parts_->Refresh(false);
    });
    parts.groups.push_back(group);
    return group;
}

void PropertyForm::ConnectRow(std::size_t row) {
    const PropertyRow& made = parts_->rows[row];
    connect(made.editor, &PropertyEditor::Entered, this,
            [this, row](const std::string& text) { Apply(row, text); });
    connect(made.editor, &PropertyEditor::Wrong, this,
            [this, row](const QString& reason) { parts_->rows[row].Remark(reason); });
    connect(made.reset, &QToolButton::clicked, this, [this, row] {
        const std::string fallback(parts_->Description(row).fallback);
        parts_->rows[row].editor->Show(fallback);
        Apply(row, fallback);
    });
}

void PropertyForm::Apply(std::size_t row, std::string text) {
    const QPointer<PropertyForm> form(this);
    const std::shared_ptr<Parts> parts = parts_;  // outlive the form
    parts->Apply(row, text, form);
    if (form && row < parts->rows.size()) Q_EMIT Changed(Words(parts->Description(row).name));
}

void PropertyForm::FocusMoved(QWidget* from, QWidget* to) {
    if (!from || !parts_->body || !isAncestorOf(from)) return;
    for (const PropertyRow& row : parts_->rows) {
        const auto within = [&](QWidget* widget) {
            return widget && (widget == row.editor || row.editor->isAncestorOf(widget));
        };
        if (within(from) && !within(to)) parts_->Seal();
    }
    if (to && isAncestorOf(to) && to != parts_->search) ensureWidgetVisible(to);
}

void PropertyForm::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    const QRect area = viewport()->geometry();
    const int height = parts_->search->sizeHint().height();
    parts_->search->setGeometry(area.left(), area.top() - height, area.width(), height);
}

}  // namespace tessaloom
