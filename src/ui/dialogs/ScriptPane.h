#pragma once

#include <QWidget>
#include <functional>
#include <optional>
#include <string>

#include "ui/dialogs/ScriptFile.h"
#include "ui/dialogs/ScriptWords.h"

class QLabel;

namespace tessaloom {

class FindBar;
class NoticeBar;
class ScriptEditor;
class Workspace;

/// The portfolio's script file in an editor, with all that has to be asked about it in a bar above: it is
/// missing, others changed it, another file became the script, a text was left unsaved.
class ScriptPane : public QWidget {
    Q_OBJECT

public:
    explicit ScriptPane(Workspace& workspace, QWidget* parent = nullptr);

    ScriptEditor* Editor() const { return editor_; }
    FindBar* Finder() const { return finder_; }

    bool Modified() const;
    bool CanSave() const;

    /// Looks at which file is the script, and at what became of it.
    void Refresh();

    /// False when the file was not written; the bar then says why. `Saved` is emitted before it returns.
    bool Save();

    /// Asks about the unsaved text; `close` is called when it was saved or given up.
    void AskToClose(std::function<void()> close);

    /// Keeps the unsaved text beside the script: there is no time to ask.
    void Keep();

    void ShowFault(std::optional<ScriptWords::Place> fault);

Q_SIGNALS:
    void Saved();
    void StateChanged();  ///< Modified or not, another file, another fault.

private:
    void Open(const std::string& path);
    void FileWentAway();
    void Discard();
    void SaveThen(const std::function<void()>& act);
    void TakeKept();
    void ShowNotice();
    bool ShowQuestion();
    void AskBeforeClosing();
    void AskWhoseChangesHold();
    void AskBeforeOpening();
    void AskAboutKept();
    void ShowState();
    void ShowPlace();

    Workspace& workspace_;
    ScriptFile file_;
    NoticeBar* notice_;
    ScriptEditor* editor_;
    FindBar* finder_;
    QLabel* place_;
    std::optional<ScriptWords::Place> fault_;
    std::function<void()> close_;  ///< Empty: the window is not being closed.
    QString notSaved_;             ///< Why the last try to save failed.
    bool opened_ = false;
    bool kept_ = false;  ///< A text was left unsaved, and nobody has said what to do with it.
};

}  // namespace tessaloom
