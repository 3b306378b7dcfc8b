#include "platform/posix/PosixFileSystem.h"

#include <fcntl.h>
#include <grp.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "platform/posix/Descriptor.h"
#include "support/TemporaryFolder.h"

namespace tessaloom::testing {
namespace {

namespace fs = std::filesystem;

class PosixFileSystemTest : public ::testing::Test {
protected:
    std::string In(std::string_view name) const { return folder_ / name; }
    std::string Content(const std::string& path) { return files_.ReadFile(path).value_or("<none>"); }

    static unsigned Mode(const std::string& path) {
        struct stat status;
        return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 0777u : 0;
    }

    auto Entries() const { return std::distance(fs::directory_iterator(folder_.Path()), {}); }

    TemporaryFolder folder_;
    PosixFileSystem files_;
};

TEST_F(PosixFileSystemTest, WritesWhatItReadsUnderEitherSeparator) {
    const std::string bytes("a\0b\r\n\xff", 6);
    ASSERT_TRUE(files_.MakeFolder(In("x\\y\\")));
    ASSERT_TRUE(files_.WriteFile(In("x\\y\\z.bin"), "a longer content that was there before"));
    ASSERT_TRUE(files_.WriteFile(In("x/y/z.bin"), bytes));
    EXPECT_EQ(files_.ReadFile(In("x\\y/z.bin")), bytes);
    EXPECT_TRUE(files_.FileExists(In("x\\y\\z.bin")));
    EXPECT_TRUE(files_.FolderExists(In("x\\y\\")));
    EXPECT_TRUE(files_.AppendText(In("x/y/z.bin"), "more"));
    EXPECT_EQ(files_.ReadFile(In("x/y/z.bin")), bytes + "more");
}

TEST_F(PosixFileSystemTest, ReadsUpToALimit) {
    files_.WriteFile(In("a"), "12345");
    EXPECT_EQ(files_.ReadFile(In("a"), 5), "12345");
    EXPECT_EQ(files_.ReadFile(In("a"), 4), std::nullopt);
    EXPECT_EQ(files_.LastFailure(), "File too large");
    EXPECT_TRUE(files_.ReadFile("/proc/self/status"));  // a file that tells no size
}

TEST_F(PosixFileSystemTest, RefusesWhatIsNoRegularFile) {
    ASSERT_EQ(::mkfifo(In("pipe").c_str(), 0600), 0);
    ASSERT_TRUE(files_.MakeFolder(In("folder")));
    files_.WriteFile(In("file"), "x");
    for (const std::string& path : {In("pipe"), In("folder"), std::string("/dev/zero"), std::string(),
                                    In("file") + std::string("\0", 1)}) {
        SCOPED_TRACE(path);
        EXPECT_FALSE(files_.FileExists(path));
        EXPECT_FALSE(files_.ReadFile(path));
        EXPECT_FALSE(files_.ReplaceFile(path, "x"));
        EXPECT_FALSE(files_.AppendText(path, "x"));
        EXPECT_FALSE(files_.CopyFile(path, In("copy")));
        EXPECT_FALSE(files_.CopyFile(In("file"), path));
    }
    EXPECT_FALSE(files_.DeleteFile(In("folder"), true));
    EXPECT_FALSE(files_.FileExists(In("copy")));
}

TEST_F(PosixFileSystemTest, ReplacesAFileAndKeepsItsPermissions) {
    ASSERT_TRUE(files_.ReplaceFile(In("a.ini"), "new"));
    EXPECT_EQ(Mode(In("a.ini")) & 0600u, 0600u);
    ::chmod(In("a.ini").c_str(), 0640);
    ASSERT_TRUE(files_.ReplaceFile(In("a.ini"), "newer"));
    EXPECT_EQ(Mode(In("a.ini")), 0640u);
    ASSERT_TRUE(files_.ReplaceFile(In("a.ini"), "secret", Access::OwnerOnly));
    EXPECT_EQ(Mode(In("a.ini")), 0600u);
    ASSERT_TRUE(files_.ReplaceFile(In("b.ini"), "secret", Access::OwnerOnly));
    EXPECT_EQ(Mode(In("b.ini")), 0600u);
    ::chmod(In("b.ini").c_str(), 0444);
    EXPECT_FALSE(files_.ReplaceFile(In("b.ini"), "x"));
    EXPECT_EQ(Content(In("a.ini")) + Content(In("b.ini")), "secretsecret");
    EXPECT_EQ(Entries(), 2);
}

/// Runs `action` in a process of another user, who belongs to `group`, too.
template <typename Action>
bool SucceedsAs(uid_t user, gid_t group, Action&& action) {
    const pid_t child = ::fork();
    if (child == 0) {
        const bool other = ::setgroups(1, &group) == 0 && ::setgid(user) == 0 && ::setuid(user) == 0;
        ::_exit(other && action() ? 0 : 1);
    }
    int status = 1;
    return ::waitpid(child, &status, 0) == child && status == 0;
}

TEST_F(PosixFileSystemTest, GivesNoOtherGroupTheRightsOfTheOldOne) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can make files of other users";
    constexpr uid_t Owner = 60001, Colleague = 60002;
    constexpr gid_t Shared = 60003, Foreign = 60004;
    ::chmod(folder_.Path().c_str(), 0777);
    const struct {
        gid_t group;
        unsigned mode;
        bool replaced;
        gid_t newGroup;
        unsigned newMode;
    } rows[] = {
        {Shared,  0660, true,  Shared,    0660},
        {Foreign, 0666, true,  Colleague, 0606},
        {Foreign, 0664, false, Foreign,   0664}, // not ours to write
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.mode);
        const std::string path = In("a.ini");
        ASSERT_TRUE(files_.WriteFile(path, "old"));
        ASSERT_EQ(::chown(path.c_str(), Owner, row.group), 0);
        ASSERT_EQ(::chmod(path.c_str(), row.mode), 0);
        EXPECT_EQ(SucceedsAs(Colleague, Shared, [&] { return files_.ReplaceFile(path, "new"); }),
                  row.replaced);
        struct stat status;
        ASSERT_EQ(::stat(path.c_str(), &status), 0);
        EXPECT_EQ(status.st_gid, row.newGroup);
        EXPECT_EQ(Mode(path), row.newMode);
        EXPECT_EQ(Content(path), row.replaced ? "new" : "old");
    }
}

TEST_F(PosixFileSystemTest, ReplacesTheTargetOfALink) {
    files_.WriteFile(In("real.ini"), "old");
    fs::create_symlink("real.ini", In("link.ini"));
    fs::create_symlink("later.ini", In("dangling.ini"));
    ASSERT_TRUE(files_.ReplaceFile(In("link.ini"), "new"));
    ASSERT_TRUE(files_.ReplaceFile(In("dangling.ini"), "made"));
    EXPECT_EQ(Content(In("real.ini")), "new");
    EXPECT_EQ(Content(In("later.ini")), "made");
    EXPECT_TRUE(fs::is_symlink(In("link.ini")) && fs::is_symlink(In("dangling.ini")));
}

TEST_F(PosixFileSystemTest, KnowsAFileUnderAllItsNames) {
    ASSERT_TRUE(files_.MakeFolder(In("f")));
    for (const char* name : {"a", "b"}) ASSERT_TRUE(files_.WriteFile(In(name), "same"));
    fs::create_symlink(In("a"), In("link"));
    EXPECT_TRUE(files_.SameFile(In("a"), In("f\\..\\a")));
    EXPECT_TRUE(files_.SameFile(In("link"), In("a")));
    EXPECT_FALSE(files_.SameFile(In("a"), In("b")));
    EXPECT_TRUE(files_.SameFile(In("f/gone"), In("f\\gone")));
    EXPECT_FALSE(files_.SameFile(In("gone"), In("lost")));
}

TEST_F(PosixFileSystemTest, LeavesTheOldFileWholeWhenTheDiskIsFull) {
    files_.WriteFile(In("a.ini"), "old");
    rlimit before;
    ::getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{1000, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);  // a write beyond it is cut short, then refused, as on a full disk
    const bool replaced = files_.ReplaceFile(In("a.ini"), std::string(5000, 'x'));
    const bool copied = files_.WriteFile(In("big"), std::string(5000, 'x'));
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_FALSE(replaced);
    EXPECT_FALSE(copied);
    EXPECT_EQ(Content(In("a.ini")), "old");
    EXPECT_EQ(Entries(), 2);
}

TEST_F(PosixFileSystemTest, TakesAnotherNameBesideAFileThatIsBeingSaved) {
    files_.WriteFile(In(".a.ini.saving0"), "growing");
    const Descriptor other(::open(In(".a.ini.saving0").c_str(), O_RDONLY));
    ASSERT_EQ(::flock(other.Number(), LOCK_EX), 0);
    ASSERT_TRUE(files_.ReplaceFile(In("a.ini"), "new"));
    EXPECT_EQ(Content(In("a.ini")), "new");
    EXPECT_EQ(Content(In(".a.ini.saving0")), "growing");
    EXPECT_EQ(Entries(), 2);
}

TEST_F(PosixFileSystemTest, CopiesRenamesAndDeletes) {
    files_.WriteFile(In("a"), "A");
    files_.WriteFile(In("b"), "B");
    EXPECT_FALSE(files_.CopyFile(In("a"), In("b"), false));
    EXPECT_FALSE(files_.CopyFile(In("a"), In("a")));
    EXPECT_TRUE(files_.CopyFile(In("a"), In("b")));
    EXPECT_EQ(Content(In("b")), "A");
    EXPECT_FALSE(files_.RenameFile(In("a"), In("b")));
    EXPECT_TRUE(files_.RenameFile(In("a"), In("c")));
    EXPECT_FALSE(files_.FileExists(In("a")));
    ::chmod(In("c").c_str(), 0444);
    EXPECT_FALSE(files_.CopyFile(In("b"), In("c")));
    EXPECT_FALSE(files_.DeleteFile(In("c")));
    EXPECT_TRUE(files_.DeleteFile(In("c"), true));
    EXPECT_FALSE(files_.DeleteFile(In("c"), true));
    EXPECT_EQ(Entries(), 1);
}

TEST_F(PosixFileSystemTest, TellsAChangedFileByItsStamp) {
    files_.WriteFile(In("a"), "1");
    const std::optional<FileStamp> first = files_.Stamp(In("a"));
    ASSERT_TRUE(first);
    EXPECT_FALSE(first->settled);
    EXPECT_EQ(files_.Stamp(In("a")), first);
    files_.WriteFile(In("a"), "12");
    EXPECT_NE(files_.Stamp(In("a")), first);
    EXPECT_EQ(files_.Stamp(In("none")), std::nullopt);
    const timespec longAgo[2] = {
        timespec{1000, 5},
        timespec{1000, 5}
    };
    ::utimensat(AT_FDCWD, In("a").c_str(), longAgo, 0);
    EXPECT_TRUE(files_.Stamp(In("a"))->settled);
}

}  // namespace
}  // namespace tessaloom::testing
