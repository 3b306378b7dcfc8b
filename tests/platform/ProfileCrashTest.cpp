#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <ctime>

#include "platform/posix/Descriptor.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/profile/ProfileFiles.h"
#include "support/TemporaryFolder.h"

namespace tessaloom::testing {
namespace {

constexpr int Keys = 200;
constexpr std::size_t Padding = 4000;  // makes the writing a good part of a save

void Save(const std::string& path, int version) {
    PosixFileSystem files;
    ProfileFiles profile(files);
    const std::string padding(Padding, ' ');
    profile.Begin(path);
    for (int i = 0; i < Keys; ++i)
        profile.Set(path, "s" + std::to_string(i / 100), "key" + std::to_string(i),
                    std::to_string(version) + padding + ";");
    profile.Commit(path);
}

/// Has the system kill this process when it has worked for that long.
void DieAfter(long microseconds) {
    sigevent event = {};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGKILL;
    timer_t timer;
    const itimerspec when = {
        {                   },
        { 0, 1000 * microseconds}
    };
    if (::timer_create(CLOCK_PROCESS_CPUTIME_ID, &event, &timer) != 0 ||
        ::timer_settime(timer, 0, &when, nullptr) != 0)
        ::_exit(1);
}

/// Saves one version after the other and tells of each by a byte, until it is killed.
[[noreturn]] void SaveForEver(const std::string& path, int version, int tell) {
    for (;; ++version) {
        Save(path, version);
        if (::write(tell, "x", 1) != 1) ::_exit(1);
    }
}

/// The version that all keys bear; -1 when they do not agree.
int VersionOf(const std::string& path) {
    PosixFileSystem files;
    ProfileFiles profile(files);
    profile.Begin(path);  // one reading
    const std::string version = profile.Get(path, "s0", "key0");
    for (int i = 0; i < Keys; ++i)
        if (profile.Get(path, "s" + std::to_string(i / 100), "key" + std::to_string(i)) != version) return -1;
    return version.empty() ? -1 : std::stoi(version);
}

TEST(ProfileCrash, LeavesOneWholeVersionWheneverTheProcessIsKilled) {
    const TemporaryFolder folder(TemporaryFolder::InMemory());
    const std::string path = folder / "a.can";
    std::mt19937 random(7);
    const std::clock_t before = std::clock();
    Save(path, 0);
    // The kill comes anywhere within the first saves, however slow this build is, and at a multiple of the
    // kernel's tick of some milliseconds: there must be room for several of them.
    const long longest = 15'000 + 3 * static_cast<long>(1e6 * (std::clock() - before) / CLOCKS_PER_SEC);
    int leftovers = 0, newest = 0;
    for (int round = 1; round <= 200; ++round) {
        int ends[2];
        ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
        const Descriptor hear(ends[0]);
        Descriptor tell(ends[1]);
        const int first = round * 1000;
        const auto headStart = static_cast<unsigned>(random() % 3'000'000);  // some milliseconds: not in step
        const long life = 1 + static_cast<long>(random()) % longest;         // with that tick
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (volatile unsigned spin = headStart; spin > 0;) spin = spin - 1;
            DieAfter(life);
            SaveForEver(path, first, tell.Number());
        }
        tell.Close();
        int told = 0, status = 0;
        for (char byte; ::read(hear.Number(), &byte, 1) == 1;) ++told;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status));

        if (told > 0) newest = first + told - 1;
        const int version = VersionOf(path);
        ASSERT_TRUE(version == newest || version == first + told) << version << " after " << newest;
        newest = version;
        const auto entries = std::distance(std::filesystem::directory_iterator(folder.Path()), {});
        ASSERT_LE(entries, 2);
        leftovers += entries == 2;
    }
    EXPECT_GT(leftovers, 0) << "no save was ever interrupted";
    Save(path, 1);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
}

}  // namespace
}  // namespace tessaloom::testing
