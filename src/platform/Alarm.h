#pragma once

#include <atomic>

namespace tessaloom {

/// Raises a flag when a time has passed, whatever the thread that set it is busy with.
class Alarm {
public:
    virtual ~Alarm() = default;

    /// `flag` becomes true `seconds` from now, by a clock that never goes back (0 or less: at once). Takes
    /// the place of what was set before. The flag must live until then, or until `Cancel`.
    virtual void Set(std::atomic<bool>& flag, double seconds) = 0;

    /// What was set happens no more, once this returns.
    virtual void Cancel() = 0;
};

}  // namespace tessaloom
