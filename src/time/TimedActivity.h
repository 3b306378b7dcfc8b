#pragma once

#include "core/Store.h"
#include "time/PresentTime.h"

namespace tessaloom {

/// The rate, base time and next time of one activity, and the rules that every timed owner shares.
///
/// Rates and base times are seconds, `now` and next times are moments (time/modTime.h); `now` is the capture
/// time of the tick, `PresentTime::Now()`. An activity that is due first calls `SetNextTime`, then runs.
class TimedActivity {
public:
    /// The ranges to which the owner's setters clamp.
    TimedActivity(Range<double> rates, Range<double> baseTimes) : rates_(rates), baseTimes_(baseTimes) {}

    /// Moves a next time that has come, or is `Never`, to the first grid point after `now`; with rate 0 to
    /// `Never`. A next time that still lies ahead stays.
    void SetNextTime(double now);

    /// Makes the activity due at once.
    void Force(double now) { nextTime_ = now; }

    bool Due(double now) const { return nextTime_ <= now; }

    /// Computes a next time that lies ahead anew: for a clock that was set back. What is due stays due, so
    /// that an activity that was forced, or never ran yet, is not put off.
    void Restart(double now);

    /// Seconds between two runs; 0: never by itself.
    double Rate() const { return rate_; }

    /// True when that changed the rate. An activity that stood at `Never` gets its next time at once;
    /// `present` is asked only then. Any other next time stays until it comes.
    bool SetRate(double seconds, const PresentTime& present);

    /// Whole seconds after midnight to which the grid of run times is aligned.
    double BaseTime() const { return baseTime_; }

    /// True when that changed the base time. Takes effect when the next time is next computed.
    bool SetBaseTime(double seconds) { return Store(baseTime_, seconds, baseTimes_); }

    /// 0 in a new activity, so that it is due at once.
    double NextTime() const { return nextTime_; }
    void SetNextTimeTo(double moment) { nextTime_ = moment; }

private:
    void Compute(double now);

    Range<double> rates_;
    Range<double> baseTimes_;
    double rate_ = 0;
    double baseTime_ = 0;
    double nextTime_ = 0;
};

}  // namespace tessaloom
