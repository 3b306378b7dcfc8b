#include "ui/dialogs/Setups.h"
#include "ui/shared/SetupWindow.h"

namespace tessaloom {

void ShowCanvasSetup(Workspace& workspace, QWidget* parent, int canvas, CanvasPage) {
    const QString name = QString("CanvasSetup%1").arg(canvas);
    SetupWindow::ShowOnly(name,
                          [&] { return new SetupWindow(workspace, name, "Canvas Properties", parent); });
}

}  // namespace tessaloom
