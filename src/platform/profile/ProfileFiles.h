#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/PrivateProfile.h"

namespace tessaloom {

/// Profile files on a `FileSystem`.
///
/// A file is parsed once while its stamp stays the same. It is UTF-8 when all of it is valid UTF-8, else
/// Windows-1252; a change writes it as UTF-8. Line ends are kept, new ones are CR LF. The cost of reading or
/// changing keys within a transaction does not grow with the file.
class ProfileFiles : public PrivateProfile {
public:
    /// Larger files count as unreadable, and so do those of more lines: each takes some hundred bytes of
    /// memory.
    static constexpr std::size_t FileLimit = std::size_t{64} << 20;
    static constexpr std::size_t LineLimit = 1'000'000;

    /// Told, in one sentence, of a file that is not text or cannot be read or written: once per file, until
    /// it has been written.
    using Reporter = std::function<void(const std::string& message)>;

    explicit ProfileFiles(FileSystem& files, Reporter report = {});
    ~ProfileFiles() override;

    std::string Get(std::string_view path, std::string_view section, std::string_view key,
                    std::size_t limit = ValueLimit) override;
    bool Set(std::string_view path, std::string_view section, std::string_view key,
             std::string_view value) override;
    bool RemoveSection(std::string_view path, std::string_view section) override;
    std::vector<ProfileSection> Sections(std::string_view path) override;
    std::vector<ProfileKey> Keys(std::string_view path, std::string_view section) override;
    ProfileState State(std::string_view path) override;
    void Begin(std::string_view path) override;
    bool Commit(std::string_view path) override;
    void Rollback(std::string_view path) override;
    void SetOwnerOnly(std::string_view path) override;

private:
    struct File;
    struct Change;

    File& Open(std::string_view path);
    File& Find(std::string_view path);
    bool Current(const File& file) const;
    bool Load(File& file);
    bool Apply(std::string_view path, Change change);
    bool Write(File& file);
    bool Fail(File& file, std::string_view trouble);

    FileSystem& files_;
    Reporter report_;
    File* latest_ = nullptr;  ///< The file opened last: it is asked for again and again.
    std::unordered_map<std::string, std::unique_ptr<File>> open_;  ///< By path, with `\` for every separator.
};

}  // namespace tessaloom
