#pragma once

namespace tessaloom {

/// The present moment as all activities of one tick see it.
class PresentTime {
public:
    /// The portfolio's capture time, or the clock where there is none yet (a moment, time/modTime.h).
    virtual double Now() const = 0;

protected:
    ~PresentTime() = default;
};

}  // namespace tessaloom
