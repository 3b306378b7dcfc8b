#include "platform/v4l2/Device.h"

#include <fcntl.h>

namespace tessaloom {

Device::Device(const DeviceCalls& calls, const std::string& path)
    : calls_(calls), handle_(calls.open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC)) {}

Device::~Device() {
    if (IsOpen()) calls_.close(handle_);
}

bool Device::Do(unsigned long request, void* argument) const {
    int result = 0;
    do {
        result = calls_.ioctl(handle_, request, argument);
    } while (result < 0 && errno == EINTR);
    return result >= 0;
}

}  // namespace tessaloom
