#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaloom {

/// What a folder tells of one of its files or folders.
struct FileDetails {
    std::string name;  ///< The last part of its path.
    bool isFolder = false;
    bool isLink = false;  ///< The rest describes what it leads to, or the link itself where that is missing.
    bool isReadOnly = false;
    std::uint64_t size = 0;                          ///< Bytes; of folders 0.
    double created = 0, accessed = 0, modified = 0;  ///< Moments, in whole seconds.
};

/// The disk that holds a path.
struct DiskDetails {
    std::uint64_t totalBytes = 0, freeBytes = 0, availableBytes = 0;
    std::string fileSystem;  ///< For example "ext4".
    std::uint32_t serialNumber = 0;
};

/// Folders, and what `FileSystem` does not tell of files. Paths are those of `FileSystem`; nothing throws.
class Folders {
public:
    virtual ~Folders() = default;

    /// Nothing when nothing of that name exists.
    virtual std::optional<FileDetails> Details(std::string_view path) const = 0;

    /// What lies in the folder, in the order of names; nothing when it cannot be read.
    virtual std::optional<std::vector<FileDetails>> List(std::string_view folder) const = 0;

    /// Gives a file or folder another place on the same disk. Fails when `target` exists.
    virtual bool Move(std::string_view source, std::string_view target) = 0;

    /// Fails when the folder holds anything.
    virtual bool RemoveFolder(std::string_view folder) = 0;

    virtual bool SetReadOnly(std::string_view path, bool readOnly) = 0;

    /// Nothing when the path leads nowhere.
    virtual std::optional<DiskDetails> Disk(std::string_view path) const = 0;
};

}  // namespace tessaloom
