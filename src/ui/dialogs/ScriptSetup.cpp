#include "ui/dialogs/ScriptSetup.h"

#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QTabWidget>
#include <QVBoxLayout>

#include "model/Portfolio.h"
#include "model/edit/PropertySet.h"
#include "script/host/Script.h"
#include "ui/dialogs/FindBar.h"
#include "ui/dialogs/ScriptEditor.h"
#include "ui/dialogs/ScriptPane.h"
#include "ui/dialogs/ScriptTree.h"
#include "ui/dialogs/ScriptWords.h"
#include "ui/dialogs/Setups.h"
#include "ui/dialogs/Wording.h"
#include "ui/property/PropertyForm.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

ScriptSetup::ScriptSetup(Workspace& workspace, QWidget* parent)
    : SetupWindow(workspace, Name, "Script[*]", parent) {
    auto* texts = new QSplitter(Qt::Vertical);
    texts->addWidget(MakeTextSide());
    texts->addWidget(MakeStatusSide());
    texts->setStretchFactor(0, 3);
    texts->setStretchFactor(1, 1);
    auto* sides = new QSplitter;
    sides->addWidget(texts);
    sides->addWidget(MakeHelpSide());
    sides->setStretchFactor(0, 2);
    sides->setStretchFactor(1, 1);
    for (QSplitter* splitter : {texts, sides}) splitter->setChildrenCollapsible(false);
    Contents()->addWidget(sides);
    AddShortcuts();

    connect(pane_, &ScriptPane::StateChanged, this, &ScriptSetup::ShowState);
    connect(pane_, &ScriptPane::Saved, this, &ScriptSetup::Reload);
    connect(form_, &PropertyForm::Changed, this, &ScriptSetup::Refresh);
    connect(&workspace, &Workspace::Pulse, this, &ScriptSetup::Refresh);
    // There is no asking then.
    disconnect(&workspace, &Workspace::SetupMustClose, this, nullptr);
    connect(&workspace, &Workspace::SetupMustClose, this, [this] {
        mustClose_ = true;
        accept();
    });
    resize(fontMetrics().averageCharWidth() * 150, fontMetrics().height() * 42);
    pane_->Editor()->setFocus();
}

QPushButton* ScriptSetup::MakeButton(const char* name, const QString& text, const QString& tip,
                                     void (ScriptSetup::*act)()) {
    auto* button = new QPushButton(text);
    button->setObjectName(name);
    button->setToolTip(tip);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, act);
    return button;
}

QWidget* ScriptSetup::MakeTextSide() {
    auto* side = new QWidget;
    pane_ = new ScriptPane(TheWorkspace());
    save_ = MakeButton("cmdSaveScript", "&Save", "Save the text; a script that runs is loaded anew (Ctrl+S)",
                       &ScriptSetup::Save);
    reload_ = MakeButton("cmdReloadScript", "Re&load Script", "Load the file anew, as it was saved last",
                         &ScriptSetup::Reload);
    goToError_ = MakeButton("cmdGoToError", "&Jump to Error",
                            "Go to the line on which the script failed (F8)", &ScriptSetup::GoToError);
    auto* buttons = new QHBoxLayout;
    for (QPushButton* button : {save_, reload_, goToError_}) buttons->addWidget(button);
    buttons->addStretch();
    buttons->addWidget(
        MakeButton("cmdFind", "Searc&h...", "Look for a text (Ctrl+F, F3)", &ScriptSetup::Search));
    auto* layout = new QVBoxLayout(side);
    layout->setContentsMargins({});
    layout->addLayout(buttons);
    layout->addWidget(pane_, 1);
    return side;
}

QWidget* ScriptSetup::MakeStatusSide() {
    auto* side = new QWidget;
    auto* label = new QLabel("Stat&us");
    status_ = new QPlainTextEdit;
    status_->setObjectName("status");
    status_->setReadOnly(true);
    status_->setTabChangesFocus(true);
    status_->setPlaceholderText("Not loaded");
    status_->setMinimumHeight(status_->fontMetrics().lineSpacing() * 8);
    label->setBuddy(status_);
    auto* layout = new QVBoxLayout(side);
    layout->setContentsMargins({});
    layout->addWidget(label);
    layout->addWidget(status_, 1);
    return side;
}

QWidget* ScriptSetup::MakeHelpSide() {
    auto* tabs = new QTabWidget;
    form_ = new PropertyForm(TheWorkspace());
    if (Portfolio* portfolio = TheWorkspace().Portfolio()) form_->Show(PropertySets::Scripting(*portfolio));
    auto* tree = new ScriptTree;
    connect(tree, &ScriptTree::Chosen, this,
            [this](const QString& path) { pane_->Editor()->InsertMember(path); });
    tabs->addTab(form_, "Settin&gs");
    tabs->addTab(tree, "O&bjects");
    return tabs;
}

void ScriptSetup::AddShortcuts() {
    const auto add = [this](const QKeySequence& keys, auto act) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, act);
    };
    add(QKeySequence::Save, &ScriptSetup::Save);
    add(QKeySequence::Find, &ScriptSetup::Search);
    add(Qt::Key_F3, [this] { pane_->Finder()->FindNext(); });
    add(Qt::SHIFT | Qt::Key_F3, [this] { pane_->Finder()->FindPrevious(); });
    add(Qt::Key_F8, &ScriptSetup::GoToError);
}

Script* ScriptSetup::TheScript() const {
    Portfolio* portfolio = TheWorkspace().Portfolio();
    return portfolio ? &portfolio->Script() : nullptr;
}

void ScriptSetup::Save() {
    if (pane_->CanSave()) pane_->Save();
}

// The script's outermost statements run now, and may show a box while which this window may go.
void ScriptSetup::Reload() {
    pane_->ShowFault({});
    Script* script = TheScript();
    if (!script || !script->Enabled()) return;
    shown_.reset();
    const QPointer<ScriptSetup> alive(this);
    script->ResetScript();
    if (alive) Refresh();
}

void ScriptSetup::Search() { pane_->Finder()->Open(); }

void ScriptSetup::GoToError() { pane_->Editor()->GoToFault(); }

void ScriptSetup::Refresh() {
    const Script* script = TheScript();
    if (!script || !isVisible()) return;
    pane_->Refresh();
    if (shown_ != script->Status()) {
        shown_ = script->Status();
        status_->setPlainText(Wording::Words(*shown_));
        status_->moveCursor(QTextCursor::End);
        pane_->ShowFault(ScriptWords::FaultIn(*shown_));
    }
    ShowState();
}

void ScriptSetup::ShowState() {
    const Script* script = TheScript();
    setWindowTitle("Script: " + (script ? Wording::Words(script->FileName()) : QString()) + "[*]");
    setWindowModified(pane_->Modified());
    save_->setEnabled(pane_->CanSave());
    reload_->setEnabled(script && script->Enabled());
    goToError_->setEnabled(pane_->Editor()->HasFault());
}

void ScriptSetup::showEvent(QShowEvent* event) {
    SetupWindow::showEvent(event);
    Refresh();
}

void ScriptSetup::done(int result) {
    if (!mustClose_ && pane_->Modified()) return pane_->AskToClose([this, result] { done(result); });
    SetupWindow::done(result);
}

void ScriptSetup::Restore() { form_->Restore(); }

void ScriptSetup::Closing() { pane_->Keep(); }

void ShowScriptSetup(Workspace& workspace, QWidget* parent) {
    if (!workspace.Portfolio()) return;
    SetupWindow::ShowOnly(ScriptSetup::Name, [&] { return new ScriptSetup(workspace, parent); });
}

}  // namespace tessaloom
