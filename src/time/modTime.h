#pragma once

#include <string>

namespace tessaloom {
class FileSystem;
class SystemTime;
}  // namespace tessaloom

/// The clock that everything timed reads, the next times of activities, the time zone and the sun.
///
/// A moment is a local day number: whole days since 30 December 1899, the time of day as the fraction.
/// Moments jump with the wall clock. The state here (the clock in use, the lookup table, the station, the sun
/// times of the day) belongs to the process and to its one thread.
namespace tessaloom::modTime {

/// The next time of an activity that never runs by itself (the day number of 14 October 2173).
inline constexpr double Never = 100000;

inline constexpr double SecondsPerDay = 86400;

/// Days, subtracted from a moment before it is formatted to whole seconds: formatting then truncates.
inline constexpr double HalfSecondBias = 0.49999 / SecondsPerDay;

/// Reads the time from `time`, which must outlive its use. Sun times computed before are forgotten.
void UseSystemTime(const SystemTime& time);

/// Ends the use of `time` if it is the one in use; the clock then reads 0 and reports an error.
void ReleaseSystemTime(const SystemTime& time);

/// The present moment, to 1/100 s or finer.
double Clock();

/// The first moment strictly after `now` on the grid of `baseTime` + k * `rate` seconds after day 0.
///
/// rate: seconds, 0 gives back `now`; baseTime: seconds after midnight; now and result: moments. A `now` that
/// lies less than a microsecond before a grid point counts as on it. Missed runs are not caught up. A rate
/// too small to count with is reported and yields 0, which is due at once.
double CalcNextUpdate(double rate, double baseTime, double now);

/// The name of the zone's time in force, "Not Available" when it has none, "Unknown" when that is not known.
std::string GetTimeZone();

/// Hours to subtract from universal time to get local time, daylight saving included; positive in the west.
double GMTOffset();

/// Fills the lookup table (time/TimeZoneLookup.h) from "timezone.txt" in the current folder; a file that is
/// missing or cannot be read leaves it empty.
void LoadTimeZoneLookup(FileSystem& files);

/// The lookup table's value for `GetTimeZone()`, "Not defined in timezone.txt" without one.
std::string ConvertedTimeZone();

/// Where the sun is watched from: degrees, north and east positive. Takes effect with the next local day.
void SetStation(double latitude, double longitude);

/// Local times of day, fractions of a day.
struct SunTimes {
    double sunrise = 0;
    double sunset = 0;
};

/// The sun times of `day` (whole days of a moment), computed at the first call for that day, with the zone
/// offset of that moment. Cheap enough for every schedule of a tick.
const SunTimes& SunTimesOn(double day);

/// Today's sunrise and sunset, fractions of a day.
double Sunrise();
double Sunset();

/// The same, as scripts read them.
double GetSunrise();
double GetSunset();

}  // namespace tessaloom::modTime
