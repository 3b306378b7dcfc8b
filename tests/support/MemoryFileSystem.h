#pragma once

#include "platform/FileSystem.h"
#include "support/Testing.h"

namespace tessaloom::testing {

/// Files in memory, for simulations. Any folder exists of which a file or `MakeFolder` has made something.
class MemoryFileSystem : public FileSystem {
public:
    struct File {
        std::string bytes;
        std::int64_t modified = 0;  ///< Counts the changes to all files: a change always shows in the stamp.
        bool readOnly = false;
        bool ownerOnly = false;
    };

    /// The file for a test to look at or to change behind everybody's back; made when missing.
    File& operator[](std::string_view path) {
        File& file = files_[Key(path)];
        file.modified = ++changes_;
        return file;
    }

    /// How often a file was written, copied, renamed or deleted.
    int Changes() const { return static_cast<int>(changes_); }

    int reads = 0;  ///< Files that were read.

    bool FileExists(std::string_view path) const override { return files_.contains(Key(path)); }

    bool FolderExists(std::string_view path) const override {
        const std::string folder = Key(path) + "/";
        if (folder == CurrentFolder() + "/" || folders_.contains(folder)) return true;
        const auto first = files_.lower_bound(folder);
        return first != files_.end() && first->first.starts_with(folder);
    }

    std::optional<FileStamp> Stamp(std::string_view path) const override {
        const auto found = files_.find(Key(path));
        if (found == files_.end()) return std::nullopt;
        return FileStamp{found->second.bytes.size(), found->second.modified, 0, true};
    }

    std::optional<std::string> ReadFile(std::string_view path, std::size_t limit = DefaultLimit) override {
        const auto found = files_.find(Key(path));
        if (found == files_.end() || found->second.bytes.size() > limit) return std::nullopt;
        ++reads;
        return found->second.bytes;
    }

    bool WriteFile(std::string_view path, std::string_view bytes) override {
        return Put(path, std::string(bytes));
    }

    bool ReplaceFile(std::string_view path, std::string_view bytes, Access access = Access::Keep) override {
        if (!Put(path, std::string(bytes))) return false;
        if (access == Access::OwnerOnly) files_[Key(path)].ownerOnly = true;
        return true;
    }

    bool MakeOwnerOnly(std::string_view path) override {
        const auto found = files_.find(Key(path));
        if (found == files_.end()) return false;
        return found->second.ownerOnly = true;
    }

    bool AppendText(std::string_view path, std::string_view text) override {
        return Put(path, ReadFile(path).value_or("").append(text));
    }

    bool CopyFile(std::string_view source, std::string_view target, bool overwrite = true,
                  const Between& = {}) override {
        const auto found = files_.find(Key(source));
        if (found == files_.end() || Key(source) == Key(target)) return false;
        return (overwrite || !FileExists(target)) && Put(target, found->second.bytes);
    }

    bool RenameFile(std::string_view source, std::string_view target, const Between& = {}) override {
        const auto found = files_.find(Key(source));
        if (found == files_.end() || FileExists(target)) return false;
        File moved = std::move(found->second);
        files_.erase(found);
        files_[Key(target)] = std::move(moved);
        ++changes_;
        return true;
    }

    bool DeleteFile(std::string_view path, bool force = false) override {
        const auto found = files_.find(Key(path));
        if (found == files_.end() || (found->second.readOnly && !force)) return false;
        files_.erase(found);
        ++changes_;
        return true;
    }

    std::string CurrentFolder() const override { return "/home"; }

    bool MakeFolder(std::string_view path) override {
        folders_.insert(Key(path) + "/");
        return true;
    }

    std::string LastFailure() const override { return "refused"; }

private:
    static std::string Key(std::string_view path) {
        constexpr std::string_view Here = "/home/";
        std::string key(path.starts_with(Here) ? path.substr(Here.size()) : path);
        std::replace(key.begin(), key.end(), '\\', '/');
        while (key.size() > 1 && key.back() == '/') key.pop_back();
        return key;
    }

    bool Put(std::string_view path, std::string bytes) {
        const auto found = files_.find(Key(path));
        if (found != files_.end() && found->second.readOnly) return false;
        File& file = found != files_.end() ? found->second : files_[Key(path)];
        file.bytes = std::move(bytes);
        file.modified = ++changes_;
        return true;
    }

    std::map<std::string, File> files_;  ///< By path relative to the current folder, where it lies in it.
    std::set<std::string> folders_;
    std::int64_t changes_ = 0;
};

}  // namespace tessaloom::testing
