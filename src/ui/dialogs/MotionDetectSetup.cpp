#include "ui/dialogs/Setups.h"
#include "ui/shared/SetupWindow.h"

namespace tessaloom {

void ShowMotionDetectSetup(Workspace& workspace, QWidget* parent, int feed) {
    const QString name = QString("MotionDetectSetup%1").arg(feed);
    SetupWindow::ShowOnly(
        name, [&] { return new SetupWindow(workspace, name, "Motion Detect Setup: ", parent); });
}

}  // namespace tessaloom
