#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "app/ReadOnlyFiles.h"

namespace tessaloom {

/// The files of another file system, of which nothing can be changed; yet whole files may be written, and are
/// read again from memory for as long as this object lives.
class ScratchFiles final : public ReadOnlyFiles {
public:
    using ReadOnlyFiles::ReadOnlyFiles;

    /// Bytes of all files written. More are refused.
    static constexpr std::size_t Limit = std::size_t{512} << 20;

    bool FileExists(std::string_view path) const override {
        return written_.contains(path) || ReadOnlyFiles::FileExists(path);
    }
    std::optional<FileStamp> Stamp(std::string_view path) const override {
        const auto found = written_.find(path);
        if (found == written_.end()) return ReadOnlyFiles::Stamp(path);
        return FileStamp{.size = found->second.bytes.size(), .modified = found->second.change};
    }
    std::optional<std::string> ReadFile(std::string_view path, std::size_t limit) override {
        const auto found = written_.find(path);
        if (found == written_.end()) return ReadOnlyFiles::ReadFile(path, limit);
        if (found->second.bytes.size() > limit) return std::nullopt;
        return found->second.bytes;
    }
    bool WriteFile(std::string_view path, std::string_view bytes) override {
        DeleteFile(path, true);
        return Add(path, bytes);
    }
    /// Behind what was written here; nothing is added to a file of the other file system.
    bool AppendText(std::string_view path, std::string_view text) override {
        return written_.contains(path) && Add(path, text);
    }
    bool DeleteFile(std::string_view path, bool) override {
        const auto found = written_.find(path);
        if (found == written_.end()) return false;
        bytes_ -= found->second.bytes.size();
        written_.erase(found);
        return true;
    }

private:
    struct File {
        std::string bytes;
        std::int64_t change = 0;
    };

    bool Add(std::string_view path, std::string_view bytes) {
        if (bytes.size() > Limit - bytes_) return false;
        File& file = written_[std::string(path)];
        file.bytes += bytes;
        file.change = ++changes_;
        bytes_ += bytes.size();
        return true;
    }

    std::map<std::string, File, std::less<>> written_;  ///< By the path as it was given.
    std::size_t bytes_ = 0;
    std::int64_t changes_ = 0;
};

}  // namespace tessaloom
