#pragma once

#include <poll.h>

#include <cstddef>
#include <cstdint>
#include <functional>

namespace tessaloom {

/// The system calls by which a camera is spoken to, with the meaning and the `errno` of the plain ones. Tests
/// put a camera of their own here.
struct DeviceCalls {
    std::function<int(const char* path, int flags)> open;
    std::function<int(int handle)> close;
    std::function<int(int handle, unsigned long request, void* argument)> ioctl;
    std::function<int(pollfd* handle, int milliseconds)> poll;
    std::function<void*(std::size_t length, int handle, std::int64_t offset)>
        map;  ///< To read; null: failed.
    std::function<int(void* address, std::size_t length)> unmap;

    /// Those of the system.
    static DeviceCalls System();
};

}  // namespace tessaloom
