#include "platform/qt/QtTimer.h"

#include <QCoreApplication>

#include "support/Testing.h"

namespace tessaloom::testing {
namespace {

TEST(QtTimer, NeverTicksWithinATick) {
    int count = 0;
    QCoreApplication application(count, nullptr);
    QtTimer timer;
    int ticks = 0, depth = 0, deepest = 0, posted = 0;
    timer.Start(0, [&] {
        deepest = std::max(deepest, ++depth);
        timer.Post([&] { ++posted; });
        for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();  // as an open box does
        --depth;
        if (++ticks == 3) timer.Stop();
    });
    for (int i = 0; i < 20; ++i) QCoreApplication::processEvents();
    EXPECT_EQ(ticks, 3);
    EXPECT_EQ(deepest, 1);
    EXPECT_EQ(posted, 3);
}

}  // namespace
}  // namespace tessaloom::testing
