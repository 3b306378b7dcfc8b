#include "platform/v4l2/DeviceCalls.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace tessaloom {

DeviceCalls DeviceCalls::System() {
    return {
        .open = [](const char* path, int flags) { return ::open(path, flags); },
        .close = [](int handle) { return ::close(handle); },
        .ioctl = [](int handle, unsigned long request,
                    void* argument) { return ::ioctl(handle, request, argument); },
        .poll = [](pollfd* handle, int milliseconds) { return ::poll(handle, 1, milliseconds); },
        .map = [](std::size_t length, int handle, std::int64_t offset) -> void* {
            void* const address = ::mmap(nullptr, length, PROT_READ, MAP_SHARED, handle, offset);
            return address == MAP_FAILED ? nullptr : address;
        },
        .unmap = [](void* address, std::size_t length) { return ::munmap(address, length); },
    };
}

}  // namespace tessaloom
