#include "ui/dialogs/Setups.h"
#include "ui/shared/SetupWindow.h"

namespace tessaloom {

void ShowWeatherSetup(Workspace& workspace, QWidget* parent) {
    SetupWindow::ShowOnly(
        "WeatherSetup", [&] { return new SetupWindow(workspace, "WeatherSetup", "Weather Input", parent); });
}

}  // namespace tessaloom
