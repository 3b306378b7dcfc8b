#include "ui/dialogs/Setups.h"
#include "ui/shared/SetupWindow.h"

namespace tessaloom {

void ShowVideoFeedsSetup(Workspace& workspace, QWidget* parent) {
    SetupWindow::ShowOnly("VideoFeedsSetup", [&] {
        return new SetupWindow(workspace, "VideoFeedsSetup", "Video Feeds", parent);
    });
}

}  // namespace tessaloom
