#include "core/ErrorReport.h"
#include "support/FakeTime.h"
#include "time/modTime.h"

#include <gtest/gtest.h>

#include <random>

namespace tessaloom {
namespace {

using testing::FakeTime;

constexpr double Second = 1 / modTime::SecondsPerDay;

// Moments compare to within 2 microseconds: a double holds them no finer than half a microsecond.
constexpr double Close = 2e-6 * Second;

double At(double day, int hour, int minute, double second = 0) {
    return day + (hour * 3600 + minute * 60 + second) * Second;
}

TEST(Clock, KeepsFractionAndWholeSecondOfOneSecond) {
    const double noon = FakeTime::FirstDay + 0.5;
    struct {
        double fraction, before, after, expected;
    } const rows[] = {
        {0.2,  noon,                        noon,               noon + 0.2 * Second               },
        {0.8,  noon,                        noon,               noon + 0.8 * Second               },
        {0.2,  noon,                        noon + Second,      noon + 1.2 * Second               },
        {0.49, noon,                        noon + Second,      noon + 1.49 * Second              },
        {0.5,  noon,                        noon + Second,      noon + 0.5 * Second               },
        {0.8,  noon,                        noon + Second,      noon + 0.8 * Second               },
        {0.01, FakeTime::FirstDay - Second, FakeTime::FirstDay, FakeTime::FirstDay + 0.01 * Second},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.expected);
        FakeTime time(noon);
        time.Advance(row.fraction);
        time.ScriptDateTimes({row.before, row.after});
        EXPECT_NEAR(modTime::Clock(), row.expected, Close);
    }
}

TEST(Clock, FollowsTheWallClockToTheMicrosecond) {
    FakeTime time(At(FakeTime::FirstDay, 23, 59, 58));
    double last = 0;
    for (int step = 0; step < 400; ++step, time.Advance(0.01)) {
        const double now = modTime::Clock();
        EXPECT_NEAR(now, time.Now(), Close);
        EXPECT_GT(now, last);
        last = now;
    }
}

TEST(Clock, ReportsAndReadsZeroWhileNoClockIsInUse) {
    { const FakeTime gone; }
    int reports = 0;
    ErrorReporter before = SetErrorReporter([&](const ErrorReport& report) {
        EXPECT_EQ(report.procedure, "Clock");
        ++reports;
    });
    EXPECT_EQ(modTime::Clock(), 0);
    SetErrorReporter(std::move(before));
    EXPECT_EQ(reports, 1);
}

TEST(CalcNextUpdate, GivesTheNextGridPoint) {
    constexpr double Day = 46037;
    struct {
        double rate, baseTime, now, expected;
    } const rows[] = {
  // clang-format off
        {300,      0,     At(Day, 10, 2, 30),         At(Day, 10, 5)},
        {300,      0,     At(Day, 10, 5),             At(Day, 10, 10)},
        {300,      60,    At(Day, 10, 2, 30),         At(Day, 10, 6)},
        {300,      3660,  At(Day, 10, 2, 30),         At(Day, 10, 6)},
        {86400,    3600,  At(Day, 23, 30),            At(Day + 1, 1, 0)},
        {86400,    86400, At(Day, 23, 30),            Day + 1},
        {1.0 / 30, 0,     At(Day, 12, 0, 0.01),       At(Day, 12, 0, 1.0 / 30)},
        {1.0 / 30, 0,     At(Day, 12, 0, 0.99),       At(Day, 12, 0, 1)},
        {0.5,      0,     At(Day, 12, 0, 0.5),        At(Day, 12, 0, 1)},
        // On the grid to within a microsecond.
        {300,      0,     At(Day, 10, 4, 59.9999995), At(Day, 10, 10)},
        {300,      0,     At(Day, 10, 4, 59.99999),   At(Day, 10, 5)},
        // Before day 0.
        {300,      0,     -2.5 + 10 * Second,         -2.5 + 300 * Second},
  // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.rate);
        EXPECT_NEAR(modTime::CalcNextUpdate(row.rate, row.baseTime, row.now), row.expected, Close);
    }
    EXPECT_EQ(modTime::CalcNextUpdate(0, 60, 46037.25), 46037.25);
}

TEST(CalcNextUpdate, IsDueAtOnceWhenTheRateIsTooSmallToCountWith) {
    std::string procedure;
    ErrorReporter before = SetErrorReporter([&](const ErrorReport& report) { procedure = report.procedure; });
    EXPECT_EQ(modTime::CalcNextUpdate(1e-307, 0, FakeTime::FirstDay), 0);
    SetErrorReporter(std::move(before));
    EXPECT_EQ(procedure, "CalcNextUpdate");
}

TEST(CalcNextUpdate, LiesAfterNowOnTheGridWhateverTheRate) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> moments(1, 60000);
    for (const double rate : {1.0 / 30, 1.0 / 24, 0.1, 0.5, 1.0, 7.0, 11.5, 300.0, 5000.0, 86400.0}) {
        SCOPED_TRACE(rate);
        for (int i = 0; i < 200; ++i) {
            const double now = moments(random);
            const double base = static_cast<double>(i * 431 % 86401);
            const double next = modTime::CalcNextUpdate(rate, base, now);
            const double runs = (next * modTime::SecondsPerDay - base) / rate;
            EXPECT_GT(next, now);
            EXPECT_LE(next, now + (rate + 2e-6) * Second);
            EXPECT_NEAR(runs, std::round(runs), 2e-6 / rate);
        }
    }
}

}  // namespace
}  // namespace tessaloom
