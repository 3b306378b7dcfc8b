#include <sys/resource.h>

#include "platform/posix/PosixFileSystem.h"
#include "platform/profile/ProfileFiles.h"
#include "support/TemporaryFolder.h"
#include "support/TracedProcess.h"

namespace tessaloom::testing {
namespace {

constexpr auto Never = [] { return false; };

/// Runs `work` in a process of its own.
pid_t Fork(const std::function<void()>& work) {
    const pid_t child = ::fork();
    if (child < 0) throw std::runtime_error("cannot fork");
    if (child > 0) return child;
    work();
    ::_exit(0);
}

/// Runs `work` in a process of its own that dies at this moment, before the system call does anything. The
/// status of its end.
int RunUntil(const Moment& moment, const std::function<void()>& work) {
    return KillAt(moment, Fork([&] {
                      LetTrace();
                      ::raise(SIGSTOP);
                      work();
                  }));
}

/// Runs `work` in a process of its own that dies when a file of its would grow beyond that size. The status
/// of its end.
int RunWithin(rlim_t bytes, const std::function<void()>& work) {
    return StatusOf(Fork([&] {
        const rlimit none = {0, 0}, size = {bytes, bytes};
        if (::setrlimit(RLIMIT_CORE, &none) != 0 || ::setrlimit(RLIMIT_FSIZE, &size) != 0) ::_exit(1);
        ::signal(SIGXFSZ, SIG_DFL);
        work();
    }));
}

/// One file, of which each version bears one text in all its keys.
class ProfileCrash : public ::testing::Test {
protected:
    void Save(const std::string& version) const {
        PosixFileSystem files;
        ProfileFiles profile(files);
        profile.Begin(path_);
        for (int i = 0; i < 200; ++i)
            profile.Set(path_, "s" + std::to_string(i / 100), "key" + std::to_string(i), version);
        profile.Commit(path_);
    }

    /// Saves and tells what the file holds then.
    std::string Lay(const std::string& version) const {
        Save(version);
        return BytesOf(path_);
    }

    /// Beside the file itself.
    std::ptrdiff_t Leftovers() const {
        return std::distance(std::filesystem::directory_iterator(folder_.Path()), {}) - 1;
    }

    const TemporaryFolder folder_{TemporaryFolder::InMemory()};
    const std::string path_ = folder_ / "a.can";
};

TEST_F(ProfileCrash, LeavesOneWholeVersionWheneverTheProcessIsKilled) {
    const struct {
        std::string from, to;
        bool afterAnother;  // killed, whose leftover lies there
    } Rows[] = {
        {"old",   "longer", false},
        {"older", "new",    false},
        {"old",   "longer", true },
    };
    if (WasUntraceable(RunUntil(Never, [] {}))) GTEST_SKIP() << "no process may be traced here";
    for (const auto& row : Rows) {
        SCOPED_TRACE(row.from + " to " + row.to + (row.afterAnother ? " after another" : ""));
        const std::string newer = Lay(row.to), older = Lay(row.from);
        const auto save = [&] { Save(row.to); };
        int oldOnes = 0, newOnes = 0, leftovers = 0;
        for (int number = 1;; ++number) {
            SCOPED_TRACE("call " + std::to_string(number));
            ASSERT_EQ(Lay(row.from), older);
            if (row.afterAnother) RunUntil([&] { return Leftovers() > 0; }, save);
            ASSERT_EQ(Leftovers(), row.afterAnother ? 1 : 0);

            int calls = 0;
            const int status = RunUntil([&] { return ++calls == number; }, save);
            const std::string found = BytesOf(path_);
            ASSERT_TRUE(found == older || found == newer) << found;
            ASSERT_LE(Leftovers(), 1);
            leftovers += static_cast<int>(Leftovers());
            ++(found == older ? oldOnes : newOnes);
            if (WIFEXITED(status)) {
                EXPECT_EQ(found, newer);
                EXPECT_EQ(Leftovers(), 0);
                break;
            }
            ASSERT_EQ(WTERMSIG(status), SIGKILL);
            Save("the next one");
            ASSERT_EQ(Leftovers(), 0);
        }
        EXPECT_GT(oldOnes, 1);
        EXPECT_GT(newOnes, 1);
        EXPECT_GT(leftovers, 1) << "no save was ever interrupted";
    }
}

TEST_F(ProfileCrash, LeavesTheOldVersionWhenTheProcessIsKilledWhileItWrites) {
    const std::size_t size = Lay("newer").size();
    const std::string older = Lay("old");
    for (const std::size_t written : {std::size_t{0}, std::size_t{1}, size / 2, size - 1}) {
        SCOPED_TRACE(written);
        ASSERT_EQ(Lay("old"), older);
        const int status = RunWithin(written, [&] { Save("newer"); });
        ASSERT_TRUE(WIFSIGNALED(status));
        ASSERT_EQ(WTERMSIG(status), SIGXFSZ);
        EXPECT_EQ(BytesOf(path_), older);
        EXPECT_EQ(Leftovers(), 1);
        Save("the next one");
        EXPECT_EQ(Leftovers(), 0);
    }
}

}  // namespace
}  // namespace tessaloom::testing
