#include "core/ErrorReport.h"
#include "support/FakeTime.h"
#include "time/modTime.h"

namespace tessaloom::testing {
namespace {

constexpr double Second = 1 / modTime::SecondsPerDay;

// Moments compare to within 2 microseconds: a double holds them no finer than half a microsecond.
constexpr double Close = 2e-6 * Second;

constexpr double Day = FakeTime::FirstDay;

double At(double day, int hour, int minute, double second = 0) {
    return day + (hour * 3600 + minute * 60 + second) * Second;
}

TEST(Clock, KeepsFractionAndWholeSecondOfOneSecond) {
    // All in seconds; the whole ones from noon: the fraction read, the date and time before and after it.
    // clang-format off
    const double rows[][4] = {
        {0.2, 0, 0, 0.2}, {0.8, 0, 0, 0.8}, {0.2, 0, 1, 1.2}, {0.49, 0, 1, 1.49},
        {0.5, 0, 1, 0.5}, {0.8, 0, 1, 0.8}, {0.01, -43201, -43200, -43199.99},
    };
    // clang-format on
    const double noon = Day + 0.5;
    for (const auto& [fraction, before, after, expected] : rows) {
        FakeTime time(noon);
        time.Advance(fraction);
        time.ScriptDateTimes({noon + before * Second, noon + after * Second});
        EXPECT_NEAR(modTime::Clock(), noon + expected * Second, Close) << expected;
    }
}

TEST(Clock, FollowsTheWallClockToTheMicrosecond) {
    FakeTime time(At(Day, 23, 59, 58));
    double last = 0;
    for (int step = 0; step < 400; ++step, time.Advance(0.01)) {
        const double now = modTime::Clock();
        EXPECT_NEAR(now, time.Now(), Close);
        EXPECT_GT(now, last);
        last = now;
    }
}

TEST(CalcNextUpdate, GivesTheNextGridPoint) {
    struct {
        double rate, baseTime, now, expected;
    } const rows[] = {
  // clang-format off
        {300, 0, At(Day, 10, 2, 30), At(Day, 10, 5)},
        {300, 0, At(Day, 10, 5), At(Day, 10, 10)},
        {300, 60, At(Day, 10, 2, 30), At(Day, 10, 6)},
        {300, 3660, At(Day, 10, 2, 30), At(Day, 10, 6)},
        {86400, 3600, At(Day, 23, 30), At(Day + 1, 1, 0)},
        {86400, 86400, At(Day, 23, 30), Day + 1},
        {1.0 / 30, 0, At(Day, 12, 0, 0.01), At(Day, 12, 0, 1.0 / 30)},
        {1.0 / 30, 0, At(Day, 12, 0, 0.99), At(Day, 12, 0, 1)},
        {0.5, 0, At(Day, 12, 0, 0.5), At(Day, 12, 0, 1)},
        {300, 0, At(Day, 10, 4, 59.9999995), At(Day, 10, 10)},  // on the grid to within a microsecond
        {300, 0, At(Day, 10, 4, 59.99999), At(Day, 10, 5)},
        {300, 0, -2.5 + 10 * Second, -2.5 + 300 * Second},  // before day 0
        {0, 60, Day + 0.25, Day + 0.25},
  // clang-format on
    };
    for (const auto& row : rows)
        EXPECT_NEAR(modTime::CalcNextUpdate(row.rate, row.baseTime, row.now), row.expected, Close)
            << row.rate << " at " << row.now;
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

TEST(modTime, ReportsARateTooSmallToCountWithAndAMissingClock) {
    { const FakeTime gone; }
    std::vector<std::string> reported;
    ErrorReporter before =
        SetErrorReporter([&](const ErrorReport& report) { reported.push_back(report.procedure); });
    EXPECT_EQ(modTime::CalcNextUpdate(1e-307, 0, Day), 0) << "due at once";
    EXPECT_EQ(modTime::Clock(), 0);
    SetErrorReporter(std::move(before));
    EXPECT_EQ(reported, (std::vector<std::string>{"CalcNextUpdate", "Clock"}));
}

}  // namespace
}  // namespace tessaloom::testing
