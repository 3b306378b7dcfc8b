#include "ui/dialogs/Setups.h"
#include "ui/shared/SetupWindow.h"

namespace tessaloom {

void ShowScriptSetup(Workspace& workspace, QWidget* parent) {
    SetupWindow::ShowOnly("ScriptSetup",
                          [&] { return new SetupWindow(workspace, "ScriptSetup", "Script", parent); });
}

}  // namespace tessaloom
