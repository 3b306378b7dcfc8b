#pragma once

namespace tessaloom {

/// Notices that the wall clock was set back (daylight saving ended, a time server corrected it).
///
/// Then every next time is recomputed from the present (`TimedActivity::Restart`) and every reference time is
/// voided; else all activity would stand still until the old time comes round again.
class ClockWatch {
public:
    /// Smaller corrections are slewed over by waiting.
    static constexpr double ToleratedSeconds = 1;

    /// To be called once a tick: true when this capture time lies more than a second before the last one.
    bool SteppedBack(double captureTime);

private:
    double last_ = 0;
};

}  // namespace tessaloom
