#include "platform/posix/EventPoll.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>

#include "support/Testing.h"

namespace tessaloom::testing {
namespace {

/// Always ready, and busy for longer than one `Dispatch` may last.
struct Glutton final : PollHandler {
    explicit Glutton(EventPoll& poll) { poll.Add(always.Number(), EPOLLIN, *this); }
    void Ready(std::uint32_t) override {
        using Clock = std::chrono::steady_clock;
        ++turns;
        for (const auto end = Clock::now() + std::chrono::milliseconds(2); Clock::now() < end;) {}
    }

    Descriptor always{::eventfd(1, EFD_CLOEXEC)};
    int turns = 0;
};

TEST(EventPoll, GivesEverybodyHisTurn) {
    EventPoll poll;
    Glutton a(poll), b(poll), c(poll);
    for (int i = 0; i < 6; ++i) poll.Dispatch();
    for (const Glutton* one : {&a, &b, &c}) EXPECT_EQ(one->turns, 2);
}

}  // namespace
}  // namespace tessaloom::testing
