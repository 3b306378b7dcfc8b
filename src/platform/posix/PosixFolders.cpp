#include "platform/posix/PosixFolders.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <memory>

#include "platform/Paths.h"
#include "platform/TextEncoding.h"
#include "platform/posix/PosixFileSystem.h"

namespace tessaloom {

namespace {

/// Without separators at its end.
std::string Checked(std::string_view path) {
    std::string native = CheckedPath(path);
    while (native.size() > 1 && native.back() == '/') native.pop_back();
    return native;
}

/// Seconds since 1970, universal time, as a local moment.
double Moment(std::int64_t seconds) {
    constexpr double DayOf1970 = 25569, SecondsADay = 86400;
    const std::time_t time = seconds;
    std::tm local{};
    if (!::localtime_r(&time, &local)) return 0;
    return DayOf1970 + static_cast<double>(seconds + local.tm_gmtoff) / SecondsADay;
}

std::optional<FileDetails> DetailsAt(int folder, const char* name) {
    struct statx link, target;
    constexpr unsigned Wanted = STATX_BASIC_STATS | STATX_BTIME;
    if (::statx(folder, name, AT_SYMLINK_NOFOLLOW, Wanted, &link) != 0) return std::nullopt;
    const bool isLink = S_ISLNK(link.stx_mode);
    const bool reached = isLink && ::statx(folder, name, 0, Wanted, &target) == 0;
    const struct statx& status = reached ? target : link;

    FileDetails details;
    details.isFolder = S_ISDIR(status.stx_mode);
    details.isLink = isLink;
    details.isReadOnly = !(status.stx_mode & WriteBits);
    details.size = details.isFolder ? 0 : status.stx_size;
    details.accessed = Moment(status.stx_atime.tv_sec);
    details.modified = Moment(status.stx_mtime.tv_sec);
    details.created = status.stx_mask & STATX_BTIME ? Moment(status.stx_btime.tv_sec) : details.modified;
    return details;
}

std::string NameOf(long kind) {
    struct Known {
        long kind;
        const char* name;
    };
    constexpr Known All[] = {
        {EXT4_SUPER_MAGIC,      "ext4"   },
        {XFS_SUPER_MAGIC,       "XFS"    },
        {BTRFS_SUPER_MAGIC,     "btrfs"  },
        {TMPFS_MAGIC,           "tmpfs"  },
        {MSDOS_SUPER_MAGIC,     "FAT"    },
        {NFS_SUPER_MAGIC,       "NFS"    },
        {OVERLAYFS_SUPER_MAGIC, "overlay"},
    };
    const auto* found = std::ranges::find(All, kind, &Known::kind);
    return found != std::end(All) ? found->name : "unknown";
}

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

}  // namespace

std::optional<FileDetails> PosixFolders::Details(std::string_view path) const {
    auto details = DetailsAt(AT_FDCWD, Checked(path).c_str());
    if (details) details->name = FileName(path);
    return details;
}

std::optional<std::vector<FileDetails>> PosixFolders::List(std::string_view folder) const {
    const std::unique_ptr<DIR, CloseFolder> open(::opendir(Checked(folder).c_str()));
    if (!open) return std::nullopt;
    std::vector<FileDetails> all;
    while (const dirent* entry = ::readdir(open.get())) {
        const std::string_view name = entry->d_name;
        // A name that is no text could not be asked for again.
        if (name == "." || name == ".." || !IsUtf8(name)) continue;
        if (auto details = DetailsAt(::dirfd(open.get()), entry->d_name)) {
            details->name = name;
            all.push_back(std::move(*details));
        }
    }
    std::ranges::sort(all, {}, &FileDetails::name);
    return all;
}

bool PosixFolders::Move(std::string_view source, std::string_view target) {
    const std::string from = Checked(source), to = Checked(target);
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
    // A file system that cannot rename without replacing.
    struct stat old;
    return ::lstat(to.c_str(), &old) != 0 && ::rename(from.c_str(), to.c_str()) == 0;
}

bool PosixFolders::RemoveFolder(std::string_view folder) { return ::rmdir(Checked(folder).c_str()) == 0; }

bool PosixFolders::SetReadOnly(std::string_view path, bool readOnly) {
    const std::string native = Checked(path);
    struct stat status;
    if (::stat(native.c_str(), &status) != 0) return false;
    const mode_t mode = status.st_mode & 07777;
    return ::chmod(native.c_str(), readOnly ? mode & ~WriteBits : mode | S_IWUSR) == 0;
}

std::optional<DiskDetails> PosixFolders::Disk(std::string_view path) const {
    const std::string native = Checked(path);
    struct statvfs disk;
    struct statfs kind;
    if (::statvfs(native.c_str(), &disk) != 0 || ::statfs(native.c_str(), &kind) != 0) return std::nullopt;
    const std::uint64_t unit = disk.f_frsize;
    return DiskDetails{unit * disk.f_blocks, unit * disk.f_bfree, unit * disk.f_bavail, NameOf(kind.f_type),
                       static_cast<std::uint32_t>(disk.f_fsid)};
}

}  // namespace tessaloom
