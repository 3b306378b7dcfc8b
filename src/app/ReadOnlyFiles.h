#pragma once

#include "platform/FileSystem.h"

namespace tessaloom {

/// The files of another file system, of which nothing can be changed.
class ReadOnlyFiles : public FileSystem {
public:
    explicit ReadOnlyFiles(FileSystem& files) : files_(files) {}

    bool FileExists(std::string_view path) const override { return files_.FileExists(path); }
    bool FolderExists(std::string_view path) const override { return files_.FolderExists(path); }
    std::optional<FileStamp> Stamp(std::string_view path) const override { return files_.Stamp(path); }
    std::optional<std::string> ReadFile(std::string_view path, std::size_t limit) override {
        return files_.ReadFile(path, limit);
    }
    bool WriteFile(std::string_view, std::string_view) override { return false; }
    bool ReplaceFile(std::string_view, std::string_view, Access) override { return false; }
    bool MakeOwnerOnly(std::string_view) override { return false; }
    bool AppendText(std::string_view, std::string_view) override { return false; }
    bool CopyFile(std::string_view, std::string_view, bool, const Between&) override { return false; }
    bool RenameFile(std::string_view, std::string_view, const Between&) override { return false; }
    bool DeleteFile(std::string_view, bool) override { return false; }
    std::string CurrentFolder() const override { return files_.CurrentFolder(); }
    bool MakeFolder(std::string_view) override { return false; }
    std::string LastFailure() const override { return files_.LastFailure(); }

private:
    FileSystem& files_;
};

}  // namespace tessaloom
