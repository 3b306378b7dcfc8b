#include "ui/dialogs/Setups.h"
#include "ui/shared/SetupWindow.h"

namespace tessaloom {

void ShowWebServerSetup(Workspace& workspace, QWidget* parent) {
    SetupWindow::ShowOnly("WebServerSetup",
                          [&] { return new SetupWindow(workspace, "WebServerSetup", "Web Server", parent); });
}

}  // namespace tessaloom
