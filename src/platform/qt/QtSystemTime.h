#pragma once

#include "platform/SystemTime.h"

#include <ctime>

namespace tessaloom {

/// The computer's clock in the zone of the TZ variable or, without one, of the system. A change of that zone
/// is noticed within a minute, a daylight saving change at once.
///
/// Not to be shared between threads: readings of one second are kept for the next ones.
class QtSystemTime final : public SystemTime {
public:
    /// Tells universal time, in seconds and nanoseconds since 1970.
    using UniversalClock = std::timespec (*)();

    static std::timespec ComputerClock();

    explicit QtSystemTime(UniversalClock clock = ComputerClock) : clock_(clock) {}

    double LocalDateTime() const override;
    double SecondsSinceMidnight() const override;
    ZoneRecord Zone() const override;

private:
    /// What is the same for all readings within one second.
    struct Second {
        std::time_t universal = -1;    ///< Seconds since 1970; -1: not read yet.
        int secondsSinceMidnight = 0;  ///< Local.
        int offset = 0;                ///< Seconds that local time is ahead of universal time.
        double moment = 0;             ///< Local day number.
    };

    /// The second of `universal`; read anew when it is not the kept one.
    const Second& At(std::time_t universal) const;

    UniversalClock clock_;
    mutable Second second_;
    mutable std::time_t zoneMinute_ = -1;  ///< The universal minute of `zone_`.
    mutable ZoneRecord zone_;
};

}  // namespace tessaloom
