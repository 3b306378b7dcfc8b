#include "platform/CaptureDriver.h"

namespace tessaloom {

std::string NumberedDriverName(const CaptureDrivers& drivers, int driver) {
    const std::optional<std::string> name = drivers.capGetDriverDescription(driver);
    if (!name) return {};
    int bearers = 0, place = 0;
    for (int other = 0; const auto description = drivers.capGetDriverDescription(other); ++other) {
        if (description != name) continue;
        ++bearers;
        if (other <= driver) place = bearers;
    }
    return bearers < 2 ? *name : "(" + std::to_string(place) + ") " + *name;
}

}  // namespace tessaloom
