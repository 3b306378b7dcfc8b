#include "platform/posix/ThreadAlarm.h"

#include "support/Testing.h"

namespace tessaloom {
namespace {

/// Waits until it rings, however busy the machine is.
bool Rings(const std::atomic<bool>& flag) {
    constexpr auto Patience = std::chrono::seconds(30);
    const auto end = std::chrono::steady_clock::now() + Patience;
    while (!flag && std::chrono::steady_clock::now() < end) std::this_thread::yield();
    return flag;
}

TEST(ThreadAlarm, RingsForTheLastThatWasSet) {
    ThreadAlarm alarm;
    std::atomic<bool> first = false, second = false;
    alarm.Set(first, 1e9);
    alarm.Set(second, 0.01);  // earlier than the thread would wake
    EXPECT_TRUE(Rings(second));
    EXPECT_FALSE(first);
    second = false;
    const auto begin = std::chrono::steady_clock::now();
    alarm.Set(second, 0.05);
    EXPECT_TRUE(Rings(second));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(50));
    for (const double atOnce : {0.0, -5.0}) {
        second = false;
        alarm.Set(second, atOnce);
        EXPECT_TRUE(Rings(second));
    }
}

TEST(ThreadAlarm, StaysSilentOnceItIsCancelled) {
    ThreadAlarm alarm;
    std::atomic<bool> flag = false, later = false;
    for (int i = 0; i < 200; ++i) {
        alarm.Set(flag, 0.0005);
        alarm.Cancel();
        const bool rang = flag.exchange(false);
        if (i % 20 != 0) continue;
        later = false;
        alarm.Set(later, 0.001);
        ASSERT_TRUE(Rings(later));
        EXPECT_FALSE(flag) << "what was cancelled had all the time to ring" << rang;
    }
}

}  // namespace
}  // namespace tessaloom
