#include "ui/property/TransparentColours.h"

#include "ui/shared/SetupWindow.h"

namespace tessaloom {

void ShowTransparentColours(Workspace& workspace, QWidget* parent, int, int) {
    SetupWindow::ShowOnly("TransparentColours", [&] {
        return new SetupWindow(workspace, "TransparentColours", "Transparent Colors", parent);
    });
}

}  // namespace tessaloom
