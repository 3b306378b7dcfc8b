#include "platform/posix/PosixFileSystem.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include "platform/posix/Descriptor.h"
#include "platform/posix/Replacement.h"

namespace tessaloom {

namespace {

constexpr std::size_t ChunkBytes = std::size_t{1} << 20;

bool Status(std::string_view path, struct stat& status) {
    return ::stat(CheckedPath(path).c_str(), &status) == 0;
}

int LastError() { return errno ? errno : EIO; }

/// Without links, in full; "" when nothing is there.
std::string RealPath(std::string_view path) {
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(CheckedPath(path).c_str(), nullptr),
                                                           &std::free);
    return real ? real.get() : "";
}

/// Opens a regular file; never waits for the other end of a pipe. An errno, 0 for success.
int OpenRegular(const std::string& path, int flags, Descriptor& file, struct stat& status) {
    Descriptor opened(::open(path.c_str(), flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666));
    if (!opened || ::fstat(opened.Number(), &status) != 0) return LastError();
    if (S_ISDIR(status.st_mode)) return EISDIR;
    if (!S_ISREG(status.st_mode)) return EINVAL;
    file = std::move(opened);
    return 0;
}

class PosixFileReader final : public FileReader {
public:
    PosixFileReader(Descriptor file, std::uint64_t size) : file_(std::move(file)), size_(size) {}

    std::uint64_t Size() const override { return size_; }
    std::string Read(std::uint64_t offset, std::size_t count) override {
        std::string bytes(count, '\0');
        std::size_t done = 0;
        while (done < count) {
            const ssize_t got =
                ::pread(file_.Number(), &bytes[done], count - done, static_cast<off_t>(offset + done));
            if (got < 0 && errno == EINTR) continue;
            if (got <= 0) break;
            done += static_cast<std::size_t>(got);
        }
        bytes.resize(done);
        return bytes;
    }

private:
    Descriptor file_;
    std::uint64_t size_;
};

/// Reads up to `count` bytes; less only at the end of the file. Negative on failure.
ssize_t ReadUpTo(int descriptor, char* to, std::size_t count) {
    std::size_t done = 0;
    while (done < count) {
        const ssize_t got = ::read(descriptor, to + done, count - done);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return -1;
        if (got == 0) break;
        done += static_cast<std::size_t>(got);
    }
    return static_cast<ssize_t>(done);
}

/// Reads an open file whole. The size it had when opened is a hint: it may grow, and some files tell none.
int ReadWhole(int descriptor, std::size_t sizeHint, std::size_t limit, std::string& bytes) {
    if (sizeHint > limit) return EFBIG;
    std::size_t want = sizeHint + 1;
    for (std::size_t have = 0;; want = std::min(ChunkBytes, limit - have + 1)) {
        bytes.resize(have + want);
        const ssize_t got = ReadUpTo(descriptor, bytes.data() + have, want);
        if (got < 0) return LastError();
        have += static_cast<std::size_t>(got);
        bytes.resize(have);
        if (have > limit) return EFBIG;
        if (static_cast<std::size_t>(got) < want) return 0;
    }
}

int CopyBytes(int source, Replacement& target, const FileSystem::Between& between) {
    const auto chunk = std::make_unique<char[]>(ChunkBytes);
    for (;;) {
        const ssize_t got = ReadUpTo(source, chunk.get(), ChunkBytes);
        if (got < 0) return LastError();
        if (got == 0) return 0;
        if (between) between();
        if (const int error = target.Write({chunk.get(), static_cast<std::size_t>(got)})) return error;
    }
}

/// Whether a file could be changed once more without a change of its time. File systems count time in steps:
/// the kernel's of some milliseconds, or (told by whole seconds) those of 2 s that memory cards have.
bool Settled(std::int64_t modified) {
    using namespace std::chrono;
    constexpr std::int64_t Second = 1'000'000'000;
    const std::int64_t step = modified % Second == 0 ? 2 * Second : Second / 20;
    const std::int64_t now = duration_cast<nanoseconds>(system_clock::now().time_since_epoch()).count();
    return std::abs(now - modified) > step;
}

int Copy(const std::string& source, const std::string& target, bool overwrite,
         const FileSystem::Between& between) {
    Descriptor from;
    struct stat status, old;
    if (const int error = OpenRegular(source, O_RDONLY, from, status)) return error;
    if (::stat(target.c_str(), &old) == 0) {
        if (!overwrite || (old.st_dev == status.st_dev && old.st_ino == status.st_ino)) return EEXIST;
    }
    Replacement copy;
    if (const int error = copy.Begin(target, Access::Keep)) return error;
    if (const int error = CopyBytes(from.Number(), copy, between)) return error;
    if (const int error = copy.SetMode(status.st_mode & 0777)) return error;
    return copy.Publish(false);
}

int Rename(const std::string& source, const std::string& target, const FileSystem::Between& between) {
    struct stat status;
    if (::lstat(source.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) return EISDIR;
    if (::renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) return 0;
    if (errno == EXDEV) {
        const int error = Copy(source, target, false, between);
        return error || ::unlink(source.c_str()) == 0 ? error : LastError();
    }
    if (errno != EINVAL && errno != ENOSYS) return LastError();
    // A file system that cannot rename without replacing.
    struct stat old;
    if (::lstat(target.c_str(), &old) == 0) return EEXIST;
    return ::rename(source.c_str(), target.c_str()) == 0 ? 0 : LastError();
}

int Delete(const std::string& path, bool force) {
    struct stat status;
    if (::lstat(path.c_str(), &status) != 0) return LastError();
    if (S_ISDIR(status.st_mode)) return EISDIR;
    if (!force && S_ISREG(status.st_mode) && !(status.st_mode & WriteBits)) return EACCES;
    return ::unlink(path.c_str()) == 0 ? 0 : LastError();
}

int Append(const std::string& path, std::string_view text) {
    Descriptor file;
    struct stat status;
    if (const int error = OpenRegular(path, O_WRONLY | O_CREAT | O_APPEND, file, status)) return error;
    return WriteAll(file.Number(), text);
}

/// Where the old file could not be deleted (its folder may be closed to us) it is written over and cut.
int Overwrite(const std::string& path, std::string_view bytes) {
    Descriptor file;
    struct stat status;
    if (const int error = OpenRegular(path, O_WRONLY | O_CREAT, file, status)) return error;
    if (const int error = WriteAll(file.Number(), bytes)) return error;
    if (::ftruncate(file.Number(), static_cast<off_t>(bytes.size())) != 0) return LastError();
    return file.Close() ? 0 : LastError();
}

int Replace(const std::string& path, std::string_view bytes, Access access) {
    Replacement fresh;
    if (const int error = fresh.Begin(path, access)) return error;
    if (const int error = fresh.Write(bytes)) return error;
    return fresh.Publish(true);
}

}  // namespace

std::string NativePath(std::string_view path) {
    std::string native(path);
    std::replace(native.begin(), native.end(), '\\', '/');
    return native;
}

std::string CheckedPath(std::string_view path) {
    return path.find('\0') == path.npos ? NativePath(path) : std::string();
}

bool PosixFileSystem::FileExists(std::string_view path) const {
    struct stat status;
    return Status(path, status) && S_ISREG(status.st_mode);
}

bool PosixFileSystem::FolderExists(std::string_view path) const {
    struct stat status;
    return Status(path, status) && S_ISDIR(status.st_mode);
}

std::optional<FileStamp> PosixFileSystem::Stamp(std::string_view path) const {
    struct stat status;
    if (!Status(path, status) || S_ISDIR(status.st_mode)) return std::nullopt;
    const std::int64_t modified =
        std::int64_t{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec;
    return FileStamp{static_cast<std::uint64_t>(status.st_size), modified, status.st_ino, Settled(modified)};
}

bool PosixFileSystem::LiesWithin(std::string_view folder, std::string_view path) const {
    std::string root = RealPath(folder);
    if (root.empty()) return false;
    if (!root.ends_with('/')) root += '/';
    return RealPath(path).starts_with(root);
}

std::optional<std::string> PosixFileSystem::ReadFile(std::string_view path, std::size_t limit) {
    Descriptor file;
    struct stat status;
    std::string bytes;
    if (!Noted(OpenRegular(CheckedPath(path), O_RDONLY, file, status))) return std::nullopt;
    if (!Noted(ReadWhole(file.Number(), static_cast<std::size_t>(status.st_size), limit, bytes)))
        return std::nullopt;
    return bytes;
}

std::unique_ptr<FileReader> PosixFileSystem::OpenFile(std::string_view path) {
    Descriptor file;
    struct stat status;
    if (!Noted(OpenRegular(CheckedPath(path), O_RDONLY, file, status))) return nullptr;
    return std::make_unique<PosixFileReader>(std::move(file), static_cast<std::uint64_t>(status.st_size));
}

bool PosixFileSystem::WriteFile(std::string_view path, std::string_view bytes) {
    const std::string native = CheckedPath(path);
    Delete(native, false);  // a failure shows in the next step, if it matters
    return Noted(Overwrite(native, bytes));
}

bool PosixFileSystem::ReplaceFile(std::string_view path, std::string_view bytes, Access access) {
    return Noted(Replace(CheckedPath(path), bytes, access));
}

bool PosixFileSystem::MakeOwnerOnly(std::string_view path) {
    struct stat status;
    const std::string native = CheckedPath(path);
    if (::stat(native.c_str(), &status) != 0) return Noted(LastError());
    const mode_t mode = status.st_mode & 07700;
    if ((status.st_mode & 07777) == mode) return true;
    return Noted(::chmod(native.c_str(), mode) == 0 ? 0 : LastError());
}

bool PosixFileSystem::AppendText(std::string_view path, std::string_view text) {
    return Noted(Append(CheckedPath(path), text));
}

bool PosixFileSystem::CopyFile(std::string_view source, std::string_view target, bool overwrite,
                               const Between& between) {
    return Noted(Copy(CheckedPath(source), CheckedPath(target), overwrite, between));
}

bool PosixFileSystem::RenameFile(std::string_view source, std::string_view target, const Between& between) {
    return Noted(Rename(CheckedPath(source), CheckedPath(target), between));
}

bool PosixFileSystem::DeleteFile(std::string_view path, bool force) {
    return Noted(Delete(CheckedPath(path), force));
}

std::string PosixFileSystem::CurrentFolder() const {
    std::error_code error;
    return std::filesystem::current_path(error).string();
}

bool PosixFileSystem::MakeFolder(std::string_view path) {
    std::string native = CheckedPath(path);
    while (native.size() > 1 && native.back() == '/') native.pop_back();
    std::error_code error;
    std::filesystem::create_directories(native, error);
    return Noted(error.value());
}

std::string PosixFileSystem::LastFailure() const { return std::generic_category().message(failure_); }

bool PosixFileSystem::Noted(int error) {
    if (error != 0) failure_ = error;
    return error == 0;
}

}  // namespace tessaloom
