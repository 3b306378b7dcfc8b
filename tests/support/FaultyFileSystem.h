#pragma once

#include <limits>

#include "platform/FileSystem.h"
#include "support/Testing.h"

namespace tessaloom::testing {

/// Passes everything on to another file system, and lets chosen operations fail without doing anything.
///
/// Operations that read or change files count, from 1; questions (existence, stamp, current folder) do not.
class FaultyFileSystem : public FileSystem {
public:
    explicit FaultyFileSystem(FileSystem& files) : files_(files) {}

    /// Counts anew; operation number `number` fails, and nothing else.
    void FailAt(int number) { Fail(number, number); }

    /// Counts anew; operation number `number` and all that follow fail.
    void FailFrom(int number) { Fail(number, std::numeric_limits<int>::max()); }

    void FailNever() { Fail(0, 0); }

    /// Operations since the last of the calls above.
    int Operations() const { return operations_; }

    bool FileExists(std::string_view path) const override { return files_.FileExists(path); }
    bool FolderExists(std::string_view path) const override { return files_.FolderExists(path); }
    std::optional<FileStamp> Stamp(std::string_view path) const override { return files_.Stamp(path); }
    std::optional<std::string> ReadFile(std::string_view path, std::size_t limit = DefaultLimit) override {
        return Works() ? files_.ReadFile(path, limit) : std::nullopt;
    }
    bool WriteFile(std::string_view path, std::string_view bytes) override {
        return Works() && files_.WriteFile(path, bytes);
    }
    bool ReplaceFile(std::string_view path, std::string_view bytes, Access access = Access::Keep) override {
        return Works() && files_.ReplaceFile(path, bytes, access);
    }
    bool MakeOwnerOnly(std::string_view path) override { return Works() && files_.MakeOwnerOnly(path); }
    bool AppendText(std::string_view path, std::string_view text) override {
        return Works() && files_.AppendText(path, text);
    }
    bool CopyFile(std::string_view source, std::string_view target, bool overwrite = true,
                  const Between& between = {}) override {
        return Works() && files_.CopyFile(source, target, overwrite, between);
    }
    bool RenameFile(std::string_view source, std::string_view target, const Between& between = {}) override {
        return Works() && files_.RenameFile(source, target, between);
    }
    bool DeleteFile(std::string_view path, bool force = false) override {
        return Works() && files_.DeleteFile(path, force);
    }
    std::string CurrentFolder() const override { return files_.CurrentFolder(); }
    bool MakeFolder(std::string_view path) override { return Works() && files_.MakeFolder(path); }
    std::string LastFailure() const override { return "No space left on device"; }

private:
    void Fail(int first, int last) {
        first_ = first;
        last_ = last;
        operations_ = 0;
    }

    bool Works() {
        ++operations_;
        return operations_ < first_ || operations_ > last_;
    }

    FileSystem& files_;
    int operations_ = 0;
    int first_ = 0, last_ = 0;
};

}  // namespace tessaloom::testing
