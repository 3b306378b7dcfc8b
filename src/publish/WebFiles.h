#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "platform/FileSystem.h"
#include "platform/Sockets.h"

namespace tessaloom {

/// Reads what the web server sends from disk. Clients that are sent the same file share its bytes.
class WebFiles {
public:
    static constexpr std::size_t LargestFile = std::size_t{64} << 20;  ///< Bytes.
    static constexpr std::size_t Together = std::size_t{256} << 20;    ///< Of all files under way.

    explicit WebFiles(FileSystem& files) : files_(files) {}

    /// The file at `path` in `folder`; null when there is none: it does not exist, no file can have that
    /// name, or the way to it leads out of the folder, by ".." or by a link. Throws an `Error` when it cannot
    /// be read.
    SharedBytes ReadIn(std::string_view folder, std::string_view path);

    /// The file at `path`; the same.
    SharedBytes Read(const std::string& path);

private:
    /// A file that clients may still be receiving.
    struct Entry {
        FileStamp stamp;
        std::weak_ptr<const std::string> bytes;
    };

    std::size_t BytesUnderWay();

    FileSystem& files_;
    std::map<std::string, Entry, std::less<>> underWay_;
};

}  // namespace tessaloom
