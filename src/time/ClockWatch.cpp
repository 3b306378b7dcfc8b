#include "time/ClockWatch.h"

#include "time/modTime.h"

namespace tessaloom {

bool ClockWatch::SteppedBack(double captureTime) {
    const bool back = (last_ - captureTime) * modTime::SecondsPerDay > ToleratedSeconds;
    last_ = captureTime;
    return back;
}

}  // namespace tessaloom
