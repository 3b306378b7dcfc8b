#include <iostream>

#include "app/Commands.h"
#include "platform/CaptureDriver.h"
#include "platform/Platform.h"

namespace tessaloom {

int ListDevices(Platform& platform) {
    CaptureDrivers& drivers = *platform.captureDrivers;
    drivers.Refresh();
    for (int driver = 0; drivers.capGetDriverDescription(driver); ++driver)
        std::cout << NumberedDriverName(drivers, driver) << '\n';
    return ExitStatus::Success;
}

}  // namespace tessaloom
