#pragma once

#include <optional>
#include <string>

#include "ui/shared/SetupWindow.h"

class QPlainTextEdit;
class QPushButton;

namespace tessaloom {

class PropertyForm;
class Script;
class ScriptPane;

/// The script of the portfolio: its text, what became of it, which events it takes part in, and the objects
/// that it sees.
///
/// "Cancel" puts back the settings; the text is saved on its own. An unsaved text is asked about, or kept
/// beside the file when the window must close at once.
class ScriptSetup : public SetupWindow {
    Q_OBJECT

public:
    static constexpr const char* Name = "ScriptSetup";

    ScriptSetup(Workspace& workspace, QWidget* parent);

    void done(int result) override;

protected:
    void Restore() override;
    void Closing() override;
    void showEvent(QShowEvent* event) override;

private:
    QWidget* MakeTextSide();
    QWidget* MakeStatusSide();
    QWidget* MakeHelpSide();
    QPushButton* MakeButton(const char* name, const QString& text, const QString& tip,
                            void (ScriptSetup::*act)());
    void AddShortcuts();

    Script* TheScript() const;
    void Save();
    void Reload();
    void Search();
    void GoToError();
    void Refresh();
    void ShowState();

    ScriptPane* pane_ = nullptr;
    PropertyForm* form_ = nullptr;
    QPlainTextEdit* status_ = nullptr;
    QPushButton* save_ = nullptr;
    QPushButton* reload_ = nullptr;
    QPushButton* goToError_ = nullptr;
    std::optional<std::string> shown_;  ///< The status that is shown; none: it is to be looked at anew.
    bool mustClose_ = false;
};

}  // namespace tessaloom
