#include "time/TimedActivity.h"

#include "support/FakeTime.h"
#include "time/ClockWatch.h"
#include "time/RateChoices.h"
#include "time/modTime.h"

#include <gtest/gtest.h>

#include <charconv>

namespace tessaloom {
namespace {

using testing::FakeTime;

constexpr double Minute = 60 / modTime::SecondsPerDay;
constexpr double Close = 2e-6 / modTime::SecondsPerDay;

TimedActivity FiveMinutes(const PresentTime& present) {
    TimedActivity activity({0, 86400}, {0, 86400});
    EXPECT_TRUE(activity.SetRate(300, present));
    return activity;
}

/// Ticks once a second for `seconds`; how often the activity ran.
int RunsWithin(TimedActivity& activity, FakeTime& time, int seconds) {
    int runs = 0;
    for (int tick = 0; tick < seconds; ++tick, time.Advance(1)) {
        if (!activity.Due(time.Now())) continue;
        activity.SetNextTime(time.Now());
        ++runs;
    }
    return runs;
}

TEST(TimedActivity, WithoutARateRunsNeverAndWithOneAtOnce) {
    FakeTime time(FakeTime::FirstDay + 10 * Minute);
    TimedActivity activity({0, 86400}, {0, 86400});
    activity.SetNextTime(time.Now());
    EXPECT_EQ(activity.NextTime(), modTime::Never);
    EXPECT_FALSE(activity.Due(time.Now()));
    activity.Restart(time.Now());
    EXPECT_EQ(activity.NextTime(), modTime::Never);

    time.Advance(130);
    EXPECT_TRUE(activity.SetRate(300, time));
    EXPECT_NEAR(activity.NextTime(), FakeTime::FirstDay + 15 * Minute, Close);
}

TEST(TimedActivity, KeepsATimeThatLiesAheadWhenItsGridChanges) {
    FakeTime time(FakeTime::FirstDay + 1 * Minute);
    TimedActivity activity = FiveMinutes(time);
    activity.SetNextTime(time.Now());
    const double next = activity.NextTime();

    EXPECT_TRUE(activity.SetRate(600, time));
    EXPECT_TRUE(activity.SetBaseTime(120));
    EXPECT_FALSE(activity.SetBaseTime(120));
    activity.SetNextTime(time.Now());
    EXPECT_EQ(activity.NextTime(), next);

    time.Set(next);
    activity.SetNextTime(time.Now());
    EXPECT_NEAR(activity.NextTime(), FakeTime::FirstDay + 12 * Minute, Close);
    EXPECT_TRUE(activity.SetRate(0, time));
    time.Set(activity.NextTime());
    activity.SetNextTime(time.Now());
    EXPECT_EQ(activity.NextTime(), modTime::Never);
}

TEST(TimedActivity, ClampsToTheRangesOfItsOwner) {
    FakeTime time;
    TimedActivity activity({0.5, 60}, {0, 86399});
    EXPECT_TRUE(activity.SetRate(1e6, time));
    EXPECT_EQ(activity.Rate(), 60);
    EXPECT_TRUE(activity.SetRate(-1, time));
    EXPECT_EQ(activity.Rate(), 0.5);
    EXPECT_TRUE(activity.SetBaseTime(86400));
    EXPECT_EQ(activity.BaseTime(), 86399);
}

TEST(TimedActivity, RunsOncePerGridPointAndOnceAfterALongSleep) {
    FakeTime time(FakeTime::FirstDay + 2 * Minute);
    TimedActivity activity = FiveMinutes(time);
    EXPECT_EQ(RunsWithin(activity, time, 3600), 1 + 12);  // at once, then on the grid

    time.Advance(3 * 3600 + 70);
    EXPECT_EQ(RunsWithin(activity, time, 60), 1);
    EXPECT_NEAR(activity.NextTime(), FakeTime::FirstDay + (4 * 60 + 5) * Minute, Close);

    activity.Force(time.Now());
    EXPECT_EQ(RunsWithin(activity, time, 1), 1);
}

TEST(ClockWatch, KeepsActivitiesRunningThroughTheHourThatComesTwice) {
    FakeTime time(FakeTime::FirstDay + 175 * Minute);
    TimedActivity activity = FiveMinutes(time);
    ClockWatch watch;
    EXPECT_FALSE(watch.SteppedBack(time.Now()));
    EXPECT_EQ(RunsWithin(activity, time, 300), 1);

    time.Advance(-3600);
    ASSERT_TRUE(watch.SteppedBack(time.Now()));
    TimedActivity unaware = activity;
    FakeTime sameTime(time.Now());
    EXPECT_EQ(RunsWithin(unaware, sameTime, 3600), 0);

    activity.Restart(time.Now());
    EXPECT_EQ(RunsWithin(activity, time, 3600), 11);  // from 02:05 to 02:55
}

TEST(TimedActivity, StaysDueWhenTheClockIsSetBack) {
    FakeTime time;
    TimedActivity fresh({0, 86400}, {0, 86400}), forced = FiveMinutes(time);
    forced.SetNextTime(time.Now());
    time.Advance(-3600);
    forced.Force(time.Now());
    for (TimedActivity* activity : {&fresh, &forced}) {
        activity->Restart(time.Now());
        EXPECT_TRUE(activity->Due(time.Now()));
    }
}

TEST(ClockWatch, ToleratesASecond) {
    FakeTime time;
    ClockWatch watch;
    struct {
        double step;  // seconds
        bool back;
    } const rows[] = {
        {0,     false},
        {0.01,  false},
        {-0.99, false},
        {-1.01, true },
        {7200,  false},
        {-3600, true },
        {0,     false}
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.step);
        time.Advance(row.step);
        EXPECT_EQ(watch.SteppedBack(time.Now()), row.back);
    }
}

TEST(RateChoices, SayTheSecondsTheyStandFor) {
    EXPECT_EQ(RateChoices.size(), 20u);
    EXPECT_EQ(RateChoices.front().label, "1 sec");
    double last = 0;
    for (const RateChoice& choice : SubSecondRateChoices) {
        SCOPED_TRACE(choice.label);
        double count = 0, divisor = 1;
        const char* const end = choice.label.data() + choice.label.size();
        auto rest = std::from_chars(choice.label.data(), end, count);
        if (*rest.ptr == '/') rest = std::from_chars(rest.ptr + 1, end, divisor);
        const std::string_view unit(rest.ptr, end);
        const double seconds = unit == " sec" ? 1 : unit == " min" ? 60 : unit == " hr" ? 3600 : 0;
        EXPECT_EQ(choice.seconds, count / divisor * seconds);
        EXPECT_GT(choice.seconds, last);
        last = choice.seconds;
    }
}

}  // namespace
}  // namespace tessaloom
