#include "time/Schedule.h"

#include "support/FakeTime.h"
#include "time/modTime.h"

#include <gtest/gtest.h>

#include <vector>

namespace tessaloom {
namespace {

using testing::FakeTime;

constexpr double Day = FakeTime::FirstDay;
constexpr double Second = 1 / modTime::SecondsPerDay;
constexpr double Minute = 60 * Second;

double TimeOfDay(int hour, int minute, int second = 0) {
    return (hour * 3600 + minute * 60 + second) / modTime::SecondsPerDay;
}

Schedule Window(double start, double stop) {
    Schedule schedule;
    schedule.SetScheduleMode(Schedule::FromStartTo);
    schedule.SetStartAbsoluteTime(start);
    schedule.SetStopAbsoluteTime(stop);
    return schedule;
}

struct CountingOwner final : SettingsOwner {
    void SettingChanged() override { ++changes; }
    int changes = 0;
};

TEST(Schedule, IsOnBetweenTwoTimesOfDay) {
    struct {
        double start, stop, time;
        bool on;
    } const rows[] = {
  // clang-format off
        {TimeOfDay(8, 0),  TimeOfDay(17, 0), TimeOfDay(7, 59, 59), false},
        {TimeOfDay(8, 0),  TimeOfDay(17, 0), TimeOfDay(8, 0),      true},
        {TimeOfDay(8, 0),  TimeOfDay(17, 0), TimeOfDay(12, 0),     true},
        {TimeOfDay(8, 0),  TimeOfDay(17, 0), TimeOfDay(17, 0),     true},
        {TimeOfDay(8, 0),  TimeOfDay(17, 0), TimeOfDay(17, 0, 1),  false},
        {TimeOfDay(22, 0), TimeOfDay(6, 0),  TimeOfDay(21, 59, 59), false},
        {TimeOfDay(22, 0), TimeOfDay(6, 0),  TimeOfDay(22, 0),     true},
        {TimeOfDay(22, 0), TimeOfDay(6, 0),  TimeOfDay(23, 30),    true},
        {TimeOfDay(22, 0), TimeOfDay(6, 0),  TimeOfDay(5, 0),      true},
        {TimeOfDay(22, 0), TimeOfDay(6, 0),  TimeOfDay(6, 0),      true},
        {TimeOfDay(22, 0), TimeOfDay(6, 0),  TimeOfDay(6, 0, 1),   false},
        {TimeOfDay(22, 0), TimeOfDay(6, 0),  TimeOfDay(12, 0),     false},
        {0,                0,                TimeOfDay(12, 0),     true},
        {TimeOfDay(9, 0),  TimeOfDay(9, 0),  TimeOfDay(3, 0),      true},
  // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(::testing::Message() << row.start << " to " << row.stop << " at " << row.time);
        // On half of the days the rounded moment lies before its own time of day, on the other half after it.
        for (double day = Day; day < Day + 40; ++day)
            EXPECT_EQ(Window(row.start, row.stop).EnableNow(day + row.time), row.on) << day;
    }
    EXPECT_TRUE(Schedule().EnableNow(Day));
}

TEST(Schedule, FollowsTheSunOfTheDayItIsAskedFor) {
    FakeTime time;
    modTime::SetStation(52.52, 13.4);
    time.ZoneInForce().bias = -60;
    constexpr double Summer = Day + 157;
    Schedule schedule;
    schedule.SetScheduleMode(Schedule::FromStartTo);
    schedule.SetStartMode(Schedule::Sunrise);
    schedule.SetStartSunriseOffset(-30);
    schedule.SetStopMode(Schedule::Sunset);
    schedule.SetStopSunsetOffset(30);
    for (const double day : {Day, Summer}) {
        SCOPED_TRACE(day);
        const modTime::SunTimes sun = modTime::SunTimesOn(day);
        EXPECT_FALSE(schedule.EnableNow(day + sun.sunrise - 31 * Minute));
        EXPECT_TRUE(schedule.EnableNow(day + sun.sunrise - 29 * Minute));
        EXPECT_TRUE(schedule.EnableNow(day + sun.sunset + 29 * Minute));
        EXPECT_FALSE(schedule.EnableNow(day + sun.sunset + 31 * Minute));
    }
    // From sunset to sunrise the window crosses midnight; an end beyond the day is not wrapped round.
    schedule.SetStartMode(Schedule::Sunset);
    schedule.SetStopMode(Schedule::Sunrise);
    EXPECT_TRUE(schedule.EnableNow(Day + 0.99));
    EXPECT_TRUE(schedule.EnableNow(Day + 0.01));
    EXPECT_FALSE(schedule.EnableNow(Day + 0.5));
    schedule.SetStartSunsetOffset(1440);
    EXPECT_FALSE(schedule.EnableNow(Day + 0.99));
    EXPECT_TRUE(schedule.EnableNow(Day + 0.01));
}

TEST(Schedule, ManyQuestionsOfOneTickReadNoClock) {
    FakeTime time;
    Schedule schedule;
    schedule.SetScheduleMode(Schedule::FromStartTo);
    schedule.SetStartMode(Schedule::Sunrise);
    schedule.SetStopMode(Schedule::Sunset);
    for (int i = 0; i < 100; ++i) {
        schedule.EnableNow(Day + 0.9999);
        schedule.EnableNow(Day + 1.0001);
    }
    EXPECT_EQ(time.Readings(), 0);
    EXPECT_EQ(time.ZoneReadings(), 2);  // once for each day
}

TEST(Schedule, RedrawsTheCanvasWhenItsAnswerChanges) {
    int redraws = 0;
    Schedule schedule = Window(TimeOfDay(8, 0), TimeOfDay(17, 0));
    schedule.SetRedraw([&] { ++redraws; });
    schedule.EnableNow(Day + 0.5);
    EXPECT_EQ(redraws, 0) << "without a canvas";

    schedule.SetCanvasIndex(3);
    const std::vector<double> times = {Day + 0.5, Day + 0.9, Day + 0.9, Day + 1.5, Day + 1.6, Day + 1.9};
    for (const double moment : times) schedule.EnableNow(moment);
    EXPECT_EQ(redraws, 3);

    schedule.Reset();
    schedule.EnableNow(Day);
    EXPECT_EQ(redraws, 3) << "without a canvas again";
}

TEST(Schedule, SettersClampAndTellOnlyChanges) {
    struct {
        const char* name;
        void (*set)(Schedule&, double);
        double (*get)(const Schedule&);
        double low, high;
    } const rows[] = {
#define ROW(Property, low, high)                                                                        \
    {#Property, [](Schedule& s, double v) { s.Set##Property(static_cast<decltype(s.Property())>(v)); }, \
     [](const Schedule& s) { return static_cast<double>(s.Property()); }, low, high}
        ROW(ScheduleMode, 0, 1),
        ROW(StartMode, 0, 2),
        ROW(StopMode, 0, 2),
        ROW(StartAbsoluteTime, 0, 0.99988427),
        ROW(StopAbsoluteTime, 0, 0.99988427),
        ROW(StartSunriseOffset, -1440, 1440),
        ROW(StopSunriseOffset, -1440, 1440),
        ROW(StartSunsetOffset, -1440, 1440),
        ROW(StopSunsetOffset, -1440, 1440),
#undef ROW
    };
    CountingOwner owner;
    Schedule schedule(&owner);
    int changes = 0;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.get(schedule), 0);
        row.set(schedule, 0);
        EXPECT_FALSE(schedule.NeedsSaving());

        row.set(schedule, 5000);
        EXPECT_EQ(row.get(schedule), row.high);
        EXPECT_TRUE(schedule.NeedsSaving());
        EXPECT_EQ(owner.changes, ++changes);

        schedule.SetNeedsSaving(false);
        row.set(schedule, row.high);
        EXPECT_FALSE(schedule.NeedsSaving());
        row.set(schedule, -5000);
        EXPECT_EQ(row.get(schedule), row.low);
        EXPECT_EQ(owner.changes, ++changes);
        schedule.SetNeedsSaving(false);
    }
    schedule.Reset();
    for (const auto& row : rows) EXPECT_EQ(row.get(schedule), 0) << row.name;
    EXPECT_FALSE(schedule.NeedsSaving());
    EXPECT_EQ(owner.changes, changes);
}

TEST(Schedule, DescribesItself) {
    struct {
        int mode, start, stop;
        double offset;  // minutes, at both ends
        const char* description;
    } const rows[] = {
        {0, 1, 1, 30,    "24-hours"                            },
        {1, 0, 0, 30,    "08:05:09 to 23:59:50"                },
        {1, 1, 1, 30,    "sunrise+30 min to sunrise+30 minutes"},
        {1, 1, 2, -15.5, "sunrise-15.5 min to sunset-15.5 min" },
        {1, 2, 1, -10,   "sunset-10 min to sunrise-10 minutes" },
        {1, 2, 0, 0.25,  "sunset+0.25 min to 23:59:50"         },
        {1, 2, 2, 0,     "sunset to sunset"                    },
        {1, 1, 1, 0,     "sunrise to sunrise"                  },
    };
    for (const auto& row : rows) {
        Schedule schedule = Window(TimeOfDay(8, 5, 9), 1);
        schedule.SetScheduleMode(row.mode);
        schedule.SetStartMode(row.start);
        schedule.SetStopMode(row.stop);
        schedule.SetStartSunriseOffset(row.offset);
        schedule.SetStopSunriseOffset(row.offset);
        schedule.SetStartSunsetOffset(row.offset);
        schedule.SetStopSunsetOffset(row.offset);
        EXPECT_EQ(schedule.Description(), row.description);
    }
}

}  // namespace
}  // namespace tessaloom
