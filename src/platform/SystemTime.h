#pragma once

#include <string>

namespace tessaloom {

/// The computer's time zone as it stands now. Biases are minutes, universal time = local time + bias.
struct ZoneRecord {
    enum class State { Unknown = 0, Standard = 1, Daylight = 2 };

    State state = State::Unknown;  ///< Which of the two times is in force.
    int bias = 0;                  ///< Of the zone, without the two below; positive west of Greenwich.
    int standardBias = 0;          ///< Added while standard time is in force, mostly 0.
    int daylightBias = 0;      ///< Added while daylight time is in force, mostly -60; 0 where there is none.
    std::string standardName;  ///< English, for example "Eastern Standard Time".
    std::string daylightName;  ///< English, for example "Eastern Daylight Time".
};

/// The computer's local clock. Readings jump with the wall clock.
class SystemTime {
public:
    virtual ~SystemTime() = default;

    /// The present local date and time as a day number since 30 December 1899, in whole seconds.
    virtual double LocalDateTime() const = 0;

    /// Seconds since local midnight, 0 .. below 86400, with a fraction of 1/100 s or finer.
    virtual double SecondsSinceMidnight() const = 0;

    virtual ZoneRecord Zone() const = 0;
};

}  // namespace tessaloom
