#include "ui/dialogs/ScriptPane.h"

#include <QLabel>
#include <QPointer>
#include <QScrollBar>
#include <QTextBlock>
#include <QVBoxLayout>
#include <utility>

#include "core/Log.h"
#include "model/Portfolio.h"
#include "platform/Platform.h"
#include "script/host/Script.h"
#include "ui/dialogs/FindBar.h"
#include "ui/dialogs/NoticeBar.h"
#include "ui/dialogs/ScriptEditor.h"
#include "ui/dialogs/Wording.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

ScriptPane::ScriptPane(Workspace& workspace, QWidget* parent)
    : QWidget(parent),
      workspace_(workspace),
      file_(workspace.Services().fileSystem),
      notice_(new NoticeBar),
      editor_(new ScriptEditor),
      finder_(new FindBar(editor_)),
      place_(new QLabel) {
    place_->setObjectName("place");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(notice_);
    layout->addWidget(editor_, 1);
    layout->addWidget(finder_);
    layout->addWidget(place_);
    connect(editor_, &QPlainTextEdit::modificationChanged, this, &ScriptPane::StateChanged);
    connect(editor_, &QPlainTextEdit::cursorPositionChanged, this, &ScriptPane::ShowPlace);
    connect(editor_, &QPlainTextEdit::textChanged, this, [this] { notSaved_.clear(); });
    Refresh();
}

bool ScriptPane::Modified() const { return editor_->document()->isModified(); }

bool ScriptPane::CanSave() const {
    return file_.Editable() && !kept_ && (Modified() || file_.TheState() == ScriptFile::State::Missing);
}

void ScriptPane::Refresh() {
    const Portfolio* portfolio = workspace_.Portfolio();
    if (!portfolio) return;
    const std::string& named = portfolio->Script().FileName();
    const bool another = !opened_ || named != file_.Path();
    const bool nothingHere = editor_->document()->isEmpty();
    if (!Modified() && (another || (nothingHere && file_.ChangedOutside())))
        Open(named);
    else if (!another && file_.Gone())
        FileWentAway();
    ShowNotice();
}

void ScriptPane::Open(const std::string& path) {
    const int line = opened_ && path == file_.Path() ? editor_->textCursor().blockNumber() : 0;
    const int scrolled = editor_->verticalScrollBar()->value();
    opened_ = true;
    editor_->ShowText(file_.Open(path));
    kept_ = file_.Editable() && file_.HasKept();
    notSaved_.clear();
    if (const QTextBlock block = editor_->document()->findBlockByNumber(line); line > 0 && block.isValid()) {
        editor_->setTextCursor(QTextCursor(block));
        editor_->verticalScrollBar()->setValue(scrolled);
    }
    editor_->MarkFault(fault_);
    ShowState();
}

void ScriptPane::FileWentAway() {
    file_.AcceptOutside();
    editor_->document()->setModified(true);
    ShowState();
}

bool ScriptPane::Save() {
    close_ = {};
    if (file_.ChangedOutside()) {
        ShowNotice();
        return false;
    }
    if (!file_.Save(editor_->Text())) {
        notSaved_ = "The script could not be saved: " + Wording::Words(file_.Failure()) + ".";
        ShowNotice();
        return false;
    }
    notSaved_.clear();
    editor_->document()->setModified(false);
    ShowState();
    Q_EMIT Saved();
    return true;
}

// The script that is loaded anew may show a box, while which the window may go.
void ScriptPane::SaveThen(const std::function<void()>& act) {
    const QPointer<ScriptPane> alive(this);
    if (!Save() || !alive) return;
    if (act) act();
    if (alive) Refresh();
}

void ScriptPane::Discard() {
    editor_->document()->setModified(false);
    Refresh();
}

void ScriptPane::AskToClose(std::function<void()> close) {
    close_ = std::move(close);
    notSaved_.clear();
    ShowNotice();
    notice_->FocusFirst();
}

void ScriptPane::Keep() {
    if (!Modified() || kept_) return;
    if (file_.Keep(editor_->Text()))
        Log(LogLevel::Notice, "The unsaved text of the script is kept in " + file_.KeptPath());
    else
        Log(LogLevel::Error, "The unsaved text of the script could not be kept in " + file_.KeptPath() +
                                 ": " + workspace_.Services().fileSystem.LastFailure());
}

void ScriptPane::TakeKept() {
    const std::optional<QString> text = file_.Kept();
    kept_ = false;
    editor_->setReadOnly(false);
    if (text) editor_->ReplaceText(*text);
    ShowState();
    ShowNotice();
    editor_->setFocus();
}

void ScriptPane::ShowFault(std::optional<ScriptWords::Place> fault) {
    fault_ = fault;
    editor_->MarkFault(fault_);
    Q_EMIT StateChanged();
}

void ScriptPane::ShowState() {
    editor_->setReadOnly(!file_.Editable() || kept_);
    ShowPlace();
    Q_EMIT StateChanged();
}

void ScriptPane::ShowPlace() {
    const QTextCursor cursor = editor_->textCursor();
    const QString format = file_.Format();
    place_->setText(
        QString("Line %1, column %2").arg(cursor.blockNumber() + 1).arg(cursor.positionInBlock() + 1) +
        (format.isEmpty() ? "" : "  \u2022  " + format));
}

/// What needs an answer; false when nothing does.
bool ScriptPane::ShowQuestion() {
    const Portfolio* portfolio = workspace_.Portfolio();
    const bool isOther = portfolio && portfolio->Script().FileName() != file_.Path();
    if (!notSaved_.isEmpty())
        notice_->Tell(notSaved_);
    else if (close_)
        AskBeforeClosing();
    else if (file_.ChangedOutside())
        AskWhoseChangesHold();
    else if (isOther)
        AskBeforeOpening();
    else if (kept_)
        AskAboutKept();
    else
        return false;
    return true;
}

void ScriptPane::AskBeforeClosing() {
    const auto save = [this] { SaveThen(std::exchange(close_, {})); };
    const auto discard = [this] {
        editor_->document()->setModified(false);
        std::exchange(close_, {})();
    };
    const auto goOn = [this] {
        close_ = {};
        ShowNotice();
        editor_->setFocus();
    };
    notice_->Tell("The script has changes that are not saved.",
                  {
                      {"cmdSaveAndClose",    "Save",          save   },
                      {"cmdDiscardAndClose", "Discard",       discard},
                      {"cmdKeepEditing",     "&Keep Editing", goOn   },
    });
}

void ScriptPane::AskWhoseChangesHold() {
    const auto reload = [this] {
        Open(file_.Path());
        Refresh();
    };
    const auto keep = [this] {
        file_.AcceptOutside();
        editor_->document()->setModified(true);
        ShowNotice();
    };
    notice_->Tell("The file was changed by another program. Reload it?",
                  {
                      {"cmdReloadFile", "Reload",     reload},
                      {"cmdKeepMine",   "&Keep Mine", keep  },
    });
}

void ScriptPane::AskBeforeOpening() {
    notice_->Tell(
        "Another file is the script now. Save what was changed in " + Wording::Words(file_.Path()) + "?",
        {
            {"cmdSaveFirst",    "Save",    [this] { SaveThen({}); }},
            {"cmdDiscardFirst", "Discard", [this] { Discard(); }   },
    });
}

void ScriptPane::AskAboutKept() {
    const auto drop = [this] {
        file_.DropKept();
        kept_ = false;
        ShowState();
        ShowNotice();
    };
    notice_->Tell("The program closed before the last changes were saved. They were kept.",
                  {
                      {"cmdTakeKept", "Take Them", [this] { TakeKept(); }},
                      {"cmdDropKept", "Drop Them", drop                  },
    });
}

void ScriptPane::ShowNotice() {
    if (ShowQuestion()) return;
    using State = ScriptFile::State;
    switch (file_.TheState()) {
        case State::NoName:
            return notice_->Tell("No file is named yet: choose one under Settings.");
        case State::Unreadable:
            return notice_->Tell("The file cannot be read: " + Wording::Words(file_.Failure()) + ".");
        case State::NotText:
            return notice_->Tell("This is no text file. It is left as it is.");
        case State::TooLarge:
            return notice_->Tell("The file is too large to be edited here.");
        case State::Missing:
            if (!editor_->document()->isEmpty()) break;
            return notice_->Tell("There is no such file yet; saving makes it.",
                                 {
                                     {"cmdStartExample", "Start from an E&xample", [this] {
                                          editor_->ReplaceText(ScriptWords::Example());
                                          ShowNotice();
                                          editor_->setFocus();
                                      }}
            });
        case State::Whole:
            break;
    }
    notice_->Tell({});
}

}  // namespace tessaloom
