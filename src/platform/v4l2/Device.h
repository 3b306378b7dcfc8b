#pragma once

#include <cerrno>
#include <string>

#include "platform/v4l2/DeviceCalls.h"

namespace tessaloom {

/// An open device file. No call on it waits.
class Device {
public:
    Device(const DeviceCalls& calls, const std::string& path);
    ~Device();
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    bool IsOpen() const { return handle_ >= 0; }
    int Handle() const { return handle_; }
    const DeviceCalls& Calls() const { return calls_; }

    /// False on failure, with the reason in `errno`.
    bool Do(unsigned long request, void* argument) const;

private:
    const DeviceCalls& calls_;
    int handle_;
};

}  // namespace tessaloom
