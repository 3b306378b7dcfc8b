#include "time/TimedActivity.h"

#include "time/modTime.h"

namespace tessaloom {

void TimedActivity::SetNextTime(double now) {
    if (nextTime_ > now && nextTime_ != modTime::Never) return;
    Compute(now);
}

void TimedActivity::Restart(double now) {
    if (!Due(now)) Compute(now);
}

void TimedActivity::Compute(double now) {
    nextTime_ = rate_ == 0 ? modTime::Never : modTime::CalcNextUpdate(rate_, baseTime_, now);
}

bool TimedActivity::SetRate(double seconds, const PresentTime& present) {
    if (!Store(rate_, seconds, rates_)) return false;
    if (nextTime_ == modTime::Never) Compute(present.Now());
    return true;
}

}  // namespace tessaloom
