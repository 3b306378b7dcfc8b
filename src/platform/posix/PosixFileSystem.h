#pragma once

#include <string>
#include <string_view>

#include "platform/FileSystem.h"

namespace tessaloom {

/// `path` as the operating system wants it: `/` between its parts.
std::string NativePath(std::string_view path);

/// The same, or an empty path (which names nothing) where a NUL would cut it.
std::string CheckedPath(std::string_view path);

/// Any of these bits of a file's mode lets it be written.
inline constexpr unsigned WriteBits = 0222;

/// The files of this machine.
class PosixFileSystem : public FileSystem {
public:
    bool FileExists(std::string_view path) const override;
    bool FolderExists(std::string_view path) const override;
    std::optional<FileStamp> Stamp(std::string_view path) const override;
    bool LiesWithin(std::string_view folder, std::string_view path) const override;
    std::optional<std::string> ReadFile(std::string_view path, std::size_t limit = DefaultLimit) override;
    std::unique_ptr<FileReader> OpenFile(std::string_view path) override;
    bool WriteFile(std::string_view path, std::string_view bytes) override;

    /// The new file is written beside the old one under a name that starts with a dot, flushed to the disk,
    /// and renamed over it. What a killed process left of such a file is removed by the next call.
    bool ReplaceFile(std::string_view path, std::string_view bytes, Access access = Access::Keep) override;

    bool MakeOwnerOnly(std::string_view path) override;
    bool AppendText(std::string_view path, std::string_view text) override;
    bool CopyFile(std::string_view source, std::string_view target, bool overwrite = true,
                  const Between& between = {}) override;

    /// Between two disks the file is copied, then deleted.
    bool RenameFile(std::string_view source, std::string_view target, const Between& between = {}) override;

    bool DeleteFile(std::string_view path, bool force = false) override;
    std::string CurrentFolder() const override;
    bool MakeFolder(std::string_view path) override;
    std::string LastFailure() const override;

private:
    bool Noted(int error);  ///< Keeps `error` (an errno, 0 for success) for `LastFailure`; true for 0.

    int failure_ = 0;
};

}  // namespace tessaloom
