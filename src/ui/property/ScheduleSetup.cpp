#include "ui/property/ScheduleSetup.h"

#include "ui/shared/SetupWindow.h"

namespace tessaloom {

void ShowScheduleSetup(Workspace& workspace, QWidget* parent, const std::string&, int,
                       std::function<Schedule*()>) {
    SetupWindow::ShowOnly("ScheduleSetup", [&] {
        return new SetupWindow(workspace, "ScheduleSetup", "Schedule Setup", parent);
    });
}

}  // namespace tessaloom
