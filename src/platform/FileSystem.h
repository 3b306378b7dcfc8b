#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Paths.h"

namespace tessaloom {

/// Tells whether a file is still the one that was read before.
struct FileStamp {
    std::uint64_t size = 0;      ///< Bytes.
    std::int64_t modified = 0;   ///< Time of the last change, nanoseconds since 1970.
    std::uint64_t identity = 0;  ///< Another number when another file has taken the name.

    /// False while the last change is so young that one more could still bear the same time.
    bool settled = true;

    bool operator==(const FileStamp& other) const {
        return size == other.size && modified == other.modified && identity == other.identity;
    }
};

/// Who may read a file that is replaced.
enum class Access {
    Keep,       ///< As before; a new file gets the usual permissions.
    OwnerOnly,  ///< The owner alone, from the first byte on.
};

/// A file that was opened to be read in portions. It stays the one that was opened when another file takes
/// its name.
class FileReader {
public:
    virtual ~FileReader() = default;

    /// Bytes, when it was opened.
    virtual std::uint64_t Size() const = 0;

    /// Up to `count` bytes from `offset` on; less where the file ends or cannot be read.
    virtual std::string Read(std::uint64_t offset, std::size_t count) = 0;
};

/// Files and folders.
///
/// Paths are UTF-8, with `\` or `/` between their parts; relative ones start at the current folder. Nothing
/// throws: an operation that fails says so by its result, and `LastFailure` tells why. Only regular files are
/// read and written; pipes, devices and folders are refused without waiting for them.
class FileSystem {
public:
    /// Larger files are not read unless a caller says otherwise.
    static constexpr std::size_t DefaultLimit = std::size_t{256} << 20;

    /// Called between two portions of what may take long. What it throws ends that: a copy that is not whole
    /// never gets its name.
    using Between = std::function<void()>;

    virtual ~FileSystem() = default;

    /// A regular file (not a folder) of that name exists.
    virtual bool FileExists(std::string_view path) const = 0;
    virtual bool FolderExists(std::string_view path) const = 0;

    /// Nothing when there is no such file.
    virtual std::optional<FileStamp> Stamp(std::string_view path) const = 0;

    /// Whether both paths lead to one file, also through links or other ways to write them. Paths at which
    /// nothing lies yet are compared as texts.
    bool SameFile(std::string_view one, std::string_view other) const;

    /// Whether the file or folder at `path`, all links followed, lies in `folder` (or below). Where there are
    /// no links the spelling alone decides, which the caller has to judge.
    virtual bool LiesWithin(std::string_view folder, std::string_view path) const;

    /// The whole file; nothing when it cannot be read or holds more than `limit` bytes.
    virtual std::optional<std::string> ReadFile(std::string_view path, std::size_t limit = DefaultLimit) = 0;

    /// Null when the file cannot be read.
    virtual std::unique_ptr<FileReader> OpenFile(std::string_view path);

    /// Deletes the file if it exists, opens it, writes `bytes` from the first byte, closes it. A failure may
    /// leave a file cut short.
    virtual bool WriteFile(std::string_view path, std::string_view bytes) = 0;

    /// Puts `bytes` in the place of the file in one step: whatever happens, even a power cut, the file is the
    /// old one or the new one, whole. A link stays a link and its target is replaced; a read-only file is
    /// refused.
    virtual bool ReplaceFile(std::string_view path, std::string_view bytes, Access access = Access::Keep) = 0;

    /// Takes an existing file from everybody but its owner.
    virtual bool MakeOwnerOnly(std::string_view path) = 0;

    /// Writes `text` behind the end of the file, which is made when missing.
    virtual bool AppendText(std::string_view path, std::string_view text) = 0;

    /// Readers of `target` see the old file or the whole copy. Fails when `target` exists and `overwrite` is
    /// false, is read-only, or is `source` itself.
    virtual bool CopyFile(std::string_view source, std::string_view target, bool overwrite = true,
                          const Between& between = {}) = 0;

    /// Fails when `target` exists. Between two file systems it is a copy.
    virtual bool RenameFile(std::string_view source, std::string_view target,
                            const Between& between = {}) = 0;

    /// Fails when there is no such file; without `force` also when it is read-only.
    virtual bool DeleteFile(std::string_view path, bool force = false) = 0;

    /// The current folder in full, without a trailing separator (unless it is the root).
    virtual std::string CurrentFolder() const = 0;

    /// Makes the folder and those above it; true when it is there afterwards.
    virtual bool MakeFolder(std::string_view path) = 0;

    /// Why the operation that failed last failed, as the operating system words it.
    virtual std::string LastFailure() const = 0;
};

}  // namespace tessaloom
