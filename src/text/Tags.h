#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessaloom {

class TagSource;
class VWS;

/// What the value of a tag is made of. Moments are local day numbers (time/modTime.h).
struct TagContext {
    double now;        ///< The capture time.
    double truncated;  ///< The same less the half-second bias: formatted to seconds, it is cut, not rounded.
    const TagSource& source;
};

/// A tag and how its value is found; that is asked for only when the tag occurs.
struct Tag {
    std::string_view name;
    std::string (*value)(const TagContext&);
};

/// Tags that are looked for only where `gate`, their common beginning, occurs.
struct TagGroup {
    std::string_view gate;
    std::span<const Tag> tags;
};

/// The groups of zone, sun, date and time, in the order in which they are replaced.
std::span<const TagGroup> TimeTagGroups();

/// Replaces the tags of the motion detectors, for example "<MotionDetectTime3>".
void ReplaceMotionTags(std::string& text, const TagSource& source);

/// Replaces the tags of the weather input's readings by those of `weather`, which must be valid.
void ReplaceWeatherTags(std::string& text, const VWS& weather);

/// "N", "NNE" .. "NNW" for a direction in degrees.
std::string_view CompassPoint(double degrees);

/// The words for the station's condition code, "Clear" for 0; "" for an unknown one.
std::string_view WeatherWord(int code);

/// Every tag that `ExpandTags` replaces, in the order in which it does. Tags that differ only in the case of
/// their letters stand there once, but for "<csvampm>" and "<csvAMPM>", whose values differ.
std::vector<std::string> AllTags();

/// The names of the tags of `ReplaceWeatherTags`.
std::vector<std::string_view> WeatherTagNames();

/// Replaces everything from "<CSV" to the next ">" by "N/A".
void ReplaceMissingWeatherTags(std::string& text);

/// Replaces all tags in `text` by their values at moment `now`. Unknown tags stay as they are.
void ExpandTags(std::string& text, double now, const TagSource& source);

/// "January" .. "December" and "Jan" .. "Dec" for month 1 .. 12, "1st" .. "31st" for day 1 .. 31; else "".
std::string_view MonthName(int month);
std::string_view ShortMonthName(int month);
std::string_view DayOrdinal(int day);

/// "6:05 AM" and "06:05" for a time of day (fraction of a day).
std::string ShortTime(double timeOfDay);
std::string ShortTime24(double timeOfDay);

}  // namespace tessaloom
