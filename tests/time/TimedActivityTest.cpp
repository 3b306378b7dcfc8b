#include "time/TimedActivity.h"

#include "support/FakeTime.h"
#include "time/ClockWatch.h"
#include "time/RateChoices.h"
#include "time/modTime.h"

#include <charconv>

namespace tessaloom::testing {
namespace {

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

TEST(TimedActivity, LeavesNeverAtTheNextQuestion) {
    FakeTime time(FakeTime::FirstDay + 12 * Minute);
    TimedActivity activity = FiveMinutes(time);
    activity.SetNextTimeTo(modTime::Never);
    activity.SetNextTime(time.Now());
    EXPECT_NEAR(activity.NextTime(), FakeTime::FirstDay + 15 * Minute, Close);
}

TEST(TimedActivity, ComputesItsNextTimeWhenThatHasCome) {
    FakeTime time(FakeTime::FirstDay + 10 * Minute);
    TimedActivity activity({0, 86400}, {0, 86400});
    const auto expectNext = [&](double minutes) {
        activity.SetNextTime(time.Now());
        EXPECT_NEAR(activity.NextTime(), FakeTime::FirstDay + minutes * Minute, Close);
    };
    activity.SetNextTime(time.Now());
    activity.Restart(time.Now());
    EXPECT_EQ(activity.NextTime(), modTime::Never);
    EXPECT_FALSE(activity.Due(time.Now()));
    time.Advance(130);
    EXPECT_TRUE(activity.SetRate(300, time));
    EXPECT_NEAR(activity.NextTime(), FakeTime::FirstDay + 15 * Minute, Close) << "at once";

    EXPECT_TRUE(activity.SetRate(600, time));
    EXPECT_TRUE(activity.SetBaseTime(120));
    EXPECT_FALSE(activity.SetBaseTime(120));
    expectNext(15);
    time.Set(activity.NextTime());
    expectNext(22);
    EXPECT_TRUE(activity.SetRate(0, time));
    time.Set(activity.NextTime());
    activity.SetNextTime(time.Now());
    EXPECT_EQ(activity.NextTime(), modTime::Never);
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
    // clang-format off
    const std::pair<double, bool> rows[] = {
        {0, false}, {0.01, false}, {-0.99, false}, {-1.01, true}, {7200, false}, {-3600, true}, {0, false},
    };
    // clang-format on
    for (const auto& [seconds, back] : rows) {
        time.Advance(seconds);
        EXPECT_EQ(watch.SteppedBack(time.Now()), back) << seconds;
    }
}

TEST(RateChoices, SayTheSecondsTheyStandFor) {
    EXPECT_EQ(RateChoices.front().label, "1 sec");
    double last = 0;
    for (const auto& [label, seconds] : SubSecondRateChoices) {
        int count = 0, divisor = 1;
        auto rest = std::from_chars(label.data(), label.data() + label.size(), count);
        if (*rest.ptr == '/') rest = std::from_chars(rest.ptr + 1, label.data() + label.size(), divisor);
        const std::string_view unit(rest.ptr, label.data() + label.size());
        EXPECT_EQ(seconds, 1.0 * count / divisor *
                               (unit == " sec"   ? 1
                                : unit == " min" ? 60
                                                 : 3600))
            << label;
        EXPECT_TRUE(unit == " sec" || unit == " min" || unit == " hr") << label;
        EXPECT_GT(seconds, last);
        last = seconds;
    }
}

}  // namespace
}  // namespace tessaloom::testing
