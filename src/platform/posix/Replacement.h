#pragma once

#include <sys/stat.h>

#include <string>
#include <string_view>

#include "platform/FileSystem.h"
#include "platform/posix/Descriptor.h"

namespace tessaloom {

/// The new content of a file, written beside it and put in its place in one step.
///
/// The file beside it has one of a few fixed names and is locked while it grows, so that two processes never
/// write the same one, and what a killed process left is recognised (nobody holds its lock) and removed.
/// Functions return an errno, 0 for success; without `Publish` the destructor removes the new file.
class Replacement {
public:
    Replacement() = default;
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;
    ~Replacement();

    /// Opens the new file. path: native. The old file, if any, must be a regular file that may be written to.
    int Begin(const std::string& path, Access access);

    int Write(std::string_view bytes);

    /// Gives the new file other permission bits than those of the old one.
    int SetMode(mode_t mode);

    /// Flushes the new file to the disk where `durable`, and renames it over the old one.
    int Publish(bool durable);

private:
    int OpenBeside(mode_t mode);
    int TakePermissions(const struct stat& old, Access access);
    void RemoveLeftovers();

    std::string target_;  ///< Links resolved.
    std::string beside_;
    Descriptor file_;
};

/// Writes all of `bytes` at the file's position; an errno, 0 for success.
int WriteAll(int descriptor, std::string_view bytes);

}  // namespace tessaloom
