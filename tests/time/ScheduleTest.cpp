#include "time/Schedule.h"

#include "support/FakeTime.h"
#include "support/PropertyTable.h"
#include "time/modTime.h"

namespace tessaloom::testing {
namespace {

constexpr double Day = FakeTime::FirstDay;
constexpr double Second = 1 / modTime::SecondsPerDay;
constexpr double Minute = 60 * Second;

Schedule Window(int startMode, int stopMode, double start = 0, double stop = 0) {
    Schedule schedule;
    schedule.SetScheduleMode(Schedule::FromStartTo);
    schedule.SetStartMode(startMode);
    schedule.SetStopMode(stopMode);
    schedule.SetStartAbsoluteTime(start);
    schedule.SetStopAbsoluteTime(stop);
    return schedule;
}

TEST(Schedule, IsOnBetweenTwoTimesOfDay) {
    constexpr double Hour = 1.0 / 24;
    struct {
        double start, stop;  // hours
        std::vector<double> on, off;
    } const rows[] = {
  // clang-format off
        {8, 17, {8 * Hour, 12 * Hour, 17 * Hour}, {8 * Hour - Second, 17 * Hour + Second}},
        {22, 6, {22 * Hour, 23.5 * Hour, 5 * Hour, 6 * Hour},
         {22 * Hour - Second, 6 * Hour + Second, 12 * Hour}},
        {0, 0, {12 * Hour}, {}},
        {9, 9, {3 * Hour}, {}},
  // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.start);
        Schedule window = Window(Schedule::Absolute, Schedule::Absolute, row.start / 24, row.stop / 24);
        // On half of the days the rounded moment lies before its own time of day, on the other half after it.
        for (double day = Day; day < Day + 40; ++day) {
            for (const double time : row.on) EXPECT_TRUE(window.EnableNow(day + time)) << day + time;
            for (const double time : row.off) EXPECT_FALSE(window.EnableNow(day + time)) << day + time;
        }
    }
    EXPECT_TRUE(Schedule().EnableNow(Day));
}

TEST(Schedule, FollowsTheSunOfTheDayItIsAskedFor) {
    FakeTime time;
    modTime::SetStation(52.52, 13.4);
    time.ZoneInForce().bias = -60;
    constexpr double Summer = Day + 157;
    Schedule schedule = Window(Schedule::Sunrise, Schedule::Sunset);
    schedule.SetStartSunriseOffset(-30);
    schedule.SetStopSunsetOffset(30);
    for (const double day : {Day, Summer}) {
        SCOPED_TRACE(day);
        const modTime::SunTimes sun = modTime::SunTimesOn(day);
        EXPECT_FALSE(schedule.EnableNow(day + sun.sunrise - 31 * Minute));
        EXPECT_TRUE(schedule.EnableNow(day + sun.sunrise - 29 * Minute));
        EXPECT_TRUE(schedule.EnableNow(day + sun.sunset + 29 * Minute));
        EXPECT_FALSE(schedule.EnableNow(day + sun.sunset + 31 * Minute));
    }
    for (int tick = 0; tick < 100; ++tick)
        for (const double moment : {Summer + 0.9999, Summer + 1.0001}) schedule.EnableNow(moment);
    EXPECT_EQ(time.Readings(), 0);
    EXPECT_EQ(time.ZoneReadings(), 3) << "once for each day";

    // From sunset to sunrise the window crosses midnight; an end beyond the day is not wrapped round.
    Schedule night = Window(Schedule::Sunset, Schedule::Sunrise);
    for (const double offset : {0, 1440}) {
        night.SetStartSunsetOffset(offset);
        EXPECT_EQ(night.EnableNow(Day + 0.99), offset == 0);
        EXPECT_TRUE(night.EnableNow(Day + 0.01));
        EXPECT_FALSE(night.EnableNow(Day + 0.5));
    }
}

TEST(Schedule, RedrawsTheCanvasWhenItsAnswerChanges) {
    int redraws = 0;
    Schedule schedule = Window(Schedule::Absolute, Schedule::Absolute, 8 / 24.0, 17 / 24.0);
    schedule.SetRedraw([&] { ++redraws; });
    schedule.EnableNow(Day + 0.5);
    EXPECT_EQ(redraws, 0) << "without a canvas";
    schedule.SetCanvasIndex(3);
    for (const double time : {0.5, 0.9, 0.9, 1.5, 1.6, 1.9}) schedule.EnableNow(Day + time);
    EXPECT_EQ(redraws, 3);
    schedule.Reset();
    schedule.EnableNow(Day);
    EXPECT_EQ(redraws, 3) << "without a canvas again";
}

TEST(Schedule, ClampsAndTellsChangesButNotItsReset) {
    using S = Schedule;
#define ROW(Name, low, high) Number<S, &S::Name, &S::Set##Name>(#Name, 0, low, high)
    const Property<S> rows[] = {
        ROW(ScheduleMode, 0, 1),
        ROW(StartMode, 0, 2),
        ROW(StopMode, 0, 2),
        ROW(StartAbsoluteTime, 0, 0.99988427),
        ROW(StopAbsoluteTime, 0, 0.99988427),
        ROW(StartSunriseOffset, -1440, 1440),
        ROW(StopSunriseOffset, -1440, 1440),
        ROW(StartSunsetOffset, -1440, 1440),
        ROW(StopSunsetOffset, -1440, 1440),
    };
#undef ROW
    CountingOwner owner;
    Schedule schedule(&owner);
    for (int i = 0; i < 2; ++i) {
        CheckProperties<S>(schedule, owner, rows);
        EXPECT_TRUE(schedule.NeedsSaving());
        const int told = owner.changes;
        schedule.Reset();  // to what the rows expect first
        EXPECT_FALSE(schedule.NeedsSaving());
        EXPECT_EQ(owner.changes, told);
    }
}

TEST(Schedule, DescribesItself) {
    struct {
        int mode, start, stop;
        double offset;  // minutes, at both ends
        const char* description;
    } const rows[] = {
  // clang-format off
        {0, 1, 1, 30, "24-hours"},
        {1, 0, 0, 30, "08:05:09 to 23:59:50"},
        {1, 1, 1, 30, "sunrise+30 min to sunrise+30 minutes"},
        {1, 1, 2, -15.5, "sunrise-15.5 min to sunset-15.5 min"},
        {1, 2, 1, -10, "sunset-10 min to sunrise-10 minutes"},
        {1, 2, 0, 0.25, "sunset+0.25 min to 23:59:50"},
        {1, 2, 2, 0, "sunset to sunset"},
        {1, 1, 1, 0, "sunrise to sunrise"},
  // clang-format on
    };
    for (const auto& row : rows) {
        Schedule schedule = Window(row.start, row.stop, 8 / 24.0 + 5 * Minute + 9 * Second, 1);
        schedule.SetScheduleMode(row.mode);
        for (const auto set : {&Schedule::SetStartSunriseOffset, &Schedule::SetStopSunriseOffset,
                               &Schedule::SetStartSunsetOffset, &Schedule::SetStopSunsetOffset})
            (schedule.*set)(row.offset);
        EXPECT_EQ(schedule.Description(), row.description);
    }
}

}  // namespace
}  // namespace tessaloom::testing
