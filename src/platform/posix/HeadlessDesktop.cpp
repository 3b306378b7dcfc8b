#include "platform/posix/HeadlessDesktop.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace tessaloom {

HeadlessDesktop::~HeadlessDesktop() {
    if (lock_ >= 0) close(lock_);
}

std::string HeadlessDesktop::UserDataFolder() const {
    std::filesystem::path base;
    if (const char* data = std::getenv("XDG_DATA_HOME"); data && *data == '/') {
        base = data;
    } else if (const char* home = std::getenv("HOME"); home && *home == '/') {
        base = std::filesystem::path(home) / ".local/share";
    } else {
        return "";
    }
    base /= "tessaloom";
    std::error_code error;
    std::filesystem::create_directories(base, error);
    return error ? "" : base.string();
}

bool HeadlessDesktop::ClaimInstance(std::string_view folder) {
    if (lock_ >= 0) return true;
    const int handle = open(std::string(folder).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0) return true;
    if (flock(handle, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        close(handle);
        return false;
    }
    lock_ = handle;
    return true;
}

}  // namespace tessaloom
