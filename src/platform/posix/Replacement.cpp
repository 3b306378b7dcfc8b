#include "platform/posix/Replacement.h"

#include <sys/file.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>

#include "platform/posix/PosixFileSystem.h"

namespace tessaloom {

namespace {

constexpr int BesideNames = 4;  // so many processes may save one file at the same moment
constexpr int OpenTries = 8;    // each is lost only to another process that comes between two calls
constexpr mode_t NewFileMode = 0666;
constexpr mode_t OwnerMode = 0600;
constexpr mode_t OthersBits = 077;
constexpr mode_t PermissionBits = 07777;

/// `path` with its links followed; as it is where it names nothing yet.
std::string Resolved(const std::string& path) {
    std::string target = path;
    // realpath knows only what exists: a link to a missing file is followed by hand
    for (int links = 0; links < 40; ++links) {
        if (std::unique_ptr<char, decltype(&std::free)> real{::realpath(target.c_str(), nullptr), &std::free})
            return real.get();
        char text[PATH_MAX];
        const ssize_t length = ::readlink(target.c_str(), text, sizeof text);
        if (length <= 0 || length == ssize_t{sizeof text}) return target;
        const std::string_view link(text, static_cast<std::size_t>(length));
        const std::size_t slash = target.rfind('/');
        if (link.front() != '/' && slash != target.npos) {
            target = target.substr(0, slash + 1).append(link);
        } else {
            target = link;
        }
    }
    return target;
}

std::string BesideName(const std::string& target, int number) {
    const std::size_t slash = target.rfind('/');
    const std::size_t start = slash == target.npos ? 0 : slash + 1;
    constexpr std::size_t LongestName = 200;  // leaves room within the 255 bytes of a name
    return target.substr(0, start) + "." + target.substr(start, LongestName) + ".saving" +
           std::to_string(number);
}

bool SameFile(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// Locks the file for this process. A file system without locks lets everybody in.
bool Lock(int descriptor) { return ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK; }

/// Whether `path` still names the open file: another process may have removed or renamed it before we locked
/// it.
bool StillNamed(int descriptor, const std::string& path) {
    struct stat open, named;
    return ::fstat(descriptor, &open) == 0 && ::lstat(path.c_str(), &named) == 0 && SameFile(open, named);
}

/// Removes what a killed process left under `name`. Neither a file in use nor anything but a plain file of
/// ours.
void RemoveLeftover(const std::string& name) {
    struct stat found;
    if (::lstat(name.c_str(), &found) != 0) return;
    if (!S_ISREG(found.st_mode) || found.st_nlink != 1 || found.st_uid != ::geteuid()) return;
    const Descriptor left(::open(name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (left && Lock(left.Number()) && StillNamed(left.Number(), name)) ::unlink(name.c_str());
}

}  // namespace

int WriteAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return errno;
        if (written == 0) return ENOSPC;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
}

Replacement::~Replacement() {
    if (file_) ::unlink(beside_.c_str());  // before the lock goes with the descriptor
}

int Replacement::Begin(const std::string& path, Access access) {
    target_ = Resolved(path);
    struct stat old;
    const bool exists = ::stat(target_.c_str(), &old) == 0;
    if (!exists && errno != ENOENT) return errno;
    if (exists && S_ISDIR(old.st_mode)) return EISDIR;
    if (exists && !S_ISREG(old.st_mode)) return EINVAL;
    if (exists && !(old.st_mode & WriteBits)) return EACCES;  // root may write everything
    if (exists && ::faccessat(AT_FDCWD, target_.c_str(), W_OK, AT_EACCESS) != 0) return errno;
    const bool usual = !exists && access == Access::Keep;
    if (const int error = OpenBeside(usual ? NewFileMode : OwnerMode)) return error;
    return exists ? TakePermissions(old, access) : 0;
}

int Replacement::OpenBeside(mode_t mode) {
    for (int attempt = 0; attempt < OpenTries; ++attempt) {
        beside_ = BesideName(target_, attempt % BesideNames);
        RemoveLeftover(beside_);
        Descriptor file(::open(beside_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
        if (!file && errno != EEXIST) return errno;
        if (!file || !Lock(file.Number()) || !StillNamed(file.Number(), beside_)) continue;
        file_ = std::move(file);
        return 0;
    }
    return EBUSY;
}

int Replacement::TakePermissions(const struct stat& old, Access access) {
    struct stat fresh;
    if (::fstat(file_.Number(), &fresh) != 0) return errno;
    // Only root may give a file away; for others it becomes theirs, as any file that an editor saves. Its
    // group stays where they belong to it; another group gets none of the old one's rights.
    constexpr uid_t SameUser = static_cast<uid_t>(-1);
    const bool otherUser = fresh.st_uid != old.st_uid, otherGroup = fresh.st_gid != old.st_gid;
    mode_t mode = old.st_mode & PermissionBits;
    if ((otherUser || otherGroup) && ::fchown(file_.Number(), old.st_uid, old.st_gid) != 0) {
        mode &= ~mode_t{S_ISUID | S_ISGID};
        if (otherGroup && ::fchown(file_.Number(), SameUser, old.st_gid) != 0) mode &= ~mode_t{S_IRWXG};
    }
    if (access == Access::OwnerOnly) mode &= ~OthersBits;
    return SetMode(mode);
}

int Replacement::SetMode(mode_t mode) { return ::fchmod(file_.Number(), mode) == 0 ? 0 : errno; }

int Replacement::Write(std::string_view bytes) { return WriteAll(file_.Number(), bytes); }

int Replacement::Publish(bool durable) {
    if (durable && ::fsync(file_.Number()) != 0) return errno;
    if (::rename(beside_.c_str(), target_.c_str()) != 0) return errno;
    const int error = file_.Close() ? 0 : errno;
    RemoveLeftovers();
    return error;
}

void Replacement::RemoveLeftovers() {
    for (int number = 0; number < BesideNames; ++number) RemoveLeftover(BesideName(target_, number));
}

}  // namespace tessaloom
