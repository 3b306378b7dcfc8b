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
#include "model/edit/Layers.h"
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
    bool Mixed(std::size_t row) const override { return inner && inner->Mixed(row); }
    KeyFault Reset(std::size_t row) override {
        const auto kept = inner;
        return kept ? kept->Reset(row) : KeyFault::None;
    }
    bool IsDefault(std::size_t row) const override { return !inner || inner->IsDefault(row); }
    bool Relevant(std::size_t row) const override { return inner && inner->Relevant(row); }
    Schedule* ScheduleOf(std::size_t row) const override { return inner ? inner->ScheduleOf(row) : nullptr; }
    std::vector<LayerId> Layers() const override { return inner ? inner->Layers() : std::vector<LayerId>(); }
};

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

/// "Change font size", "Change opacity of 3 layers"; words in capitals keep them.
std::string StepName(const Property& property, std::span<const LayerId> layers) {
    QString label = Words(property.label).remove('&');
    if (label.size() > 1 && !label[1].isUpper()) label[0] = label[0].toLower();
    const std::string name = ("Change " + label).toStdString();
    return layers.size() > 1 ? name + " of " + Layers::Counted(layers) : name;
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
    explicit Parts(Workspace& shared) : workspace(shared) {}

    Workspace& workspace;
    ShownSet set;
    std::vector<PropertyRow> rows;
    std::vector<PropertyGroup*> groups;
    /// The values when the set was shown; nothing for those in which several things differed.
    std::vector<std::optional<std::string>> found;
    std::set<QString> folded;     ///< Headings of the groups that people folded.
    QWidget* header = nullptr;    ///< Above the rows, with
    QLabel* caption = nullptr;    ///< how many layers are shown, where they are several, and
    QLineEdit* search = nullptr;  ///< for longer forms.
    QLabel* gone = nullptr;
    QWidget* body = nullptr;  ///< Holds the groups; null while there is nothing to show.

    const Property& Description(std::size_t row) const { return set.Properties()[row]; }

    std::string MergeKey(std::size_t row) const {
        std::string key(Description(row).name);
        for (const LayerId layer : set.Layers())
            key += (layer.kind == LayerId::Kind::Text ? " text " : " graphic ") + std::to_string(layer.slot);
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
        const bool mixed = set.Mixed(row);
        const bool differs = value != shown.value || mixed != shown.mixed;
        if (always || (differs && !shown.editor->Busy())) {
            if (!always) shown.Remark({});
            shown.Show(value, mixed);
        }
        shown.SetResettable(!set.IsDefault(row));
        shown.SetEnabled(set.Relevant(row));
    }

    void Refresh(bool always) {
        const bool exists = set.Exists();
        gone->setVisible(!exists);
        body->setEnabled(exists);
        if (!exists) return;
        ShowCaption();
        for (PropertyGroup* group : groups)
            if (group->IsOpen() || always)
                for (std::size_t row = group->First(); row < group->End(); ++row) RefreshRow(row, always);
    }

    void ShowCaption() {
        const std::vector<LayerId> layers = set.Layers();
        caption->setText(layers.size() > 1 ? QString::fromStdString(Layers::Counted(layers)) : QString());
    }

    /// form: may go meanwhile, as what is set may run a script that shows a box. text: nothing for the
    /// default.
    void Apply(std::size_t row, const std::optional<std::string>& text, const QPointer<PropertyForm>& form) {
        if (!set.Exists()) return;
        const Property& property = Description(row);
        const int slot = set.CanvasSlot();
        KeyFault fault = KeyFault::None;
        {
            HistoryStep step(slot > 0 ? workspace.HistoryOf(slot) : nullptr, StepName(property, set.Layers()),
                             MergeKey(row));
            fault = text ? set.Set(row, *text) : set.Reset(row);
        }
        if (!form || row >= rows.size()) return;
        PropertyRow& shown = rows[row];
        shown.Remark(Objection(property, fault, text.value_or(""), workspace.Services().locale));
        shown.value = set.Get(row);
        shown.mixed = set.Mixed(row);
        if (!shown.editor->Busy()) shown.Show(shown.value, shown.mixed);
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
    : QScrollArea(parent), parts_(new Parts(workspace)) {
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);  // Tab goes from field to field
    parts_->ReadFolded();
    parts_->header = new QWidget(this);
    auto* header = new QVBoxLayout(parts_->header);
    header->setContentsMargins({});
    parts_->caption = new QLabel;
    parts_->caption->setObjectName("caption");
    parts_->caption->setMargin(fontMetrics().height() / 4);
    QFont bold = font();
    bold.setBold(true);
    parts_->caption->setFont(bold);
    parts_->caption->hide();
    parts_->search = new QLineEdit;
    header->addWidget(parts_->caption);
    header->addWidget(parts_->search);
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
        parts.found.push_back(parts.set.Mixed(row) ? std::nullopt : std::optional(parts.set.Get(row)));
        parts.rows[row].Remark({});
        parts.rows[row].DescribeReset(now[row]);
    }
    parts.caption->setVisible(parts.set.Layers().size() > 1);
    PlaceHeader();
    parts.Refresh(true);
    FitWidth();
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
                if (parts.found[row] && parts.set.Get(row) != *parts.found[row])
                    parts.set.Set(row, *parts.found[row]);
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
    parts.caption->hide();
    PlaceHeader();
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
    parts.gone = new QLabel(parts.set.Layers().empty() ? "This is no longer there."
                                                       : "This layer is no longer there.");
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

    parts.search->clear();
    parts.search->setVisible(properties.size() >= LongForm);
    setWidget(page);
    FollowInTabOrder(parts.search, page);
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
        parts_->rows[row].editor->Show(std::string(parts_->Description(row).fallback));
        Apply(row, std::nullopt);
    });
}

void PropertyForm::Apply(std::size_t row, std::optional<std::string> text) {
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
    PlaceHeader();
}

/// Fields come to need more room, as those that show several values do.
bool PropertyForm::eventFilter(QObject* watched, QEvent* event) {
    const bool done = QScrollArea::eventFilter(watched, event);
    if (watched == widget() && event->type() == QEvent::LayoutRequest) FitWidth();
    return done;
}

/// Nothing is ever scrolled sideways.
void PropertyForm::FitWidth() {
    if (parts_->body)
        setMinimumWidth(widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width());
}

void PropertyForm::PlaceHeader() {
    const bool empty = parts_->search->isHidden() && parts_->caption->isHidden();
    parts_->header->setVisible(!empty);
    const int height = empty ? 0 : parts_->header->sizeHint().height();
    setViewportMargins(0, height, 0, 0);
    const QRect area = viewport()->geometry();
    parts_->header->setGeometry(area.left(), area.top() - height, area.width(), height);
}

}  // namespace tessaloom
