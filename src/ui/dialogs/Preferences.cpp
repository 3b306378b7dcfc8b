#include "ui/dialogs/Setups.h"
#include "ui/shared/SetupWindow.h"

namespace tessaloom {

void ShowPreferences(Workspace& workspace, QWidget* parent) {
    SetupWindow::ShowOnly("Preferences",
                          [&] { return new SetupWindow(workspace, "Preferences", "Preferences", parent); });
}

}  // namespace tessaloom
