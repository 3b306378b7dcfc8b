#include "text/Tags.h"

#include "core/modNumbers.h"
#include "locale/DateParts.h"
#include "time/modTime.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tessaloom {
namespace {

using modNumbers::FormatNI;
using Context = const TagContext&;

/// The truncated capture time under `Picture`.
template <std::size_t N>
struct Picture {
    char text[N];
    constexpr Picture(const char (&characters)[N]) { std::copy_n(characters, N, text); }
    constexpr std::string_view View() const { return {text, N - 1}; }
};

template <Picture picture>
std::string Formatted(Context c) {
    return FormatNI(FormatDate{c.truncated}, picture.View());
}

DateParts Parts(Context c) { return PartsOfMoment(c.truncated).value_or(DateParts{}); }

/// `text` with a blank before it when it is a single digit.
std::string Padded(std::string text) { return text.size() < 2 ? " " + text : text; }

std::string TwoDigits(int number) {
    return {static_cast<char>('0' + number / 10 % 10), static_cast<char>('0' + number % 10)};
}

/// "AM" or "PM": it stands behind the eight characters of the time and a blank.
std::string Half(Context c) { return Formatted<"HH:MM:SS AM/PM">(c).substr(9); }
std::string Time12(Context c) { return Formatted<"HH:MM:SS AM/PM">(c).substr(0, 8); }
std::string Hour12(Context c) { return Formatted<"HH AM/PM">(c).substr(0, 2); }
std::string ShortHour12(Context c) {
    const std::string text = Formatted<"H AM/PM">(c);
    return text.substr(0, text.find(' '));
}

/// Hundredths of the second that the truncated time shows, 0 .. 99.
int Hundredths(Context c) {
    const double seconds = c.now * modTime::SecondsPerDay;
    const double shown = std::round(c.truncated * modTime::SecondsPerDay);
    // Moments hold about a microsecond: a fraction that lies that little below a hundredth counts as it.
    return std::clamp(static_cast<int>((seconds - shown + 0.00001) * 100), 0, 99);
}

std::string Tenths(Context c) { return TwoDigits(Hundredths(c)).substr(0, 1); }
std::string HundredthsText(Context c) { return TwoDigits(Hundredths(c)); }

std::string Abbreviation(Context) {
    std::string name = modTime::GetTimeZone();
    if (name == "Not Available" || name == "Unknown") return "N/A";
    std::erase_if(name, [](char c) { return c < 'A' || c > 'Z'; });
    return name;
}

// clang-format off
constexpr auto ZoneTags = std::to_array<Tag>({
    {"<TIMEZONE>",        [](Context) { return modTime::GetTimeZone(); }},
    {"<TIMEZONEABBREV>",  Abbreviation},
    {"<TIMEZONELOOKUP>",  [](Context) { return modTime::ConvertedTimeZone(); }},
});

constexpr auto SunTags = std::to_array<Tag>({
    {"<SUNRISE>",         [](Context) { return ShortTime(modTime::Sunrise()); }},
    {"<SUNSET>",          [](Context) { return ShortTime(modTime::Sunset()); }},
    {"<SUNRISE24H>",      [](Context) { return ShortTime24(modTime::Sunrise()); }},
    {"<SUNSET24H>",       [](Context) { return ShortTime24(modTime::Sunset()); }},
});

constexpr auto DateTags = std::to_array<Tag>({
    {"<DATE>",            [](Context c) { return modNumbers::FormatI(FormatDate{std::floor(c.now)}, "Short Date"); }},
    {"<DATEYY>",          Formatted<"YY">},
    {"<DATEYYYY>",        Formatted<"YYYY">},
    {"<DATE0M>",          Formatted<"MM">},
    {"<DATEM>",           Formatted<"M">},
    {"<DATE M>",          [](Context c) { return Padded(Formatted<"M">(c)); }},
    {"<DATEMONTH>",       [](Context c) { return std::string(MonthName(Parts(c).month)); }},
    {"<DATE0D>",          Formatted<"DD">},
    {"<DATED>",           Formatted<"D">},
    {"<DATE D>",          [](Context c) { return Padded(Formatted<"D">(c)); }},
    {"<DATESHORTMONTH>",  [](Context c) { return std::string(ShortMonthName(Parts(c).month)); }},
});

constexpr auto TimeTags = std::to_array<Tag>({
    {"<TIME>",            Formatted<"HH:MM:SS">},
    {"<TIME12H>",         Formatted<"HH:MM:SS AM/PM">},
    {"<TIMEAMPM>",        Half},
    {"<TIME10>",          [](Context c) { return Formatted<"HH:MM:SS">(c) + modNumbers::NumberSeparator() + Tenths(c); }},
    {"<TIME100>",         [](Context c) { return Formatted<"HH:MM:SS">(c) + modNumbers::NumberSeparator() + HundredthsText(c); }},
    {"<TIME1012H>",       [](Context c) { return Time12(c) + modNumbers::NumberSeparator() + Tenths(c) + " " + Half(c); }},
    {"<TIME10012H>",      [](Context c) { return Time12(c) + modNumbers::NumberSeparator() + HundredthsText(c) + " " + Half(c); }},
    {"<TIMEHH>",          Formatted<"HH">},
    {"<TIME0H>",          Formatted<"HH">},
    {"<TIMEH>",           Formatted<"H">},
    {"<TIMEHH12H>",       Hour12},
    {"<TIME0H12H>",       Hour12},
    {"<TIMEH12H>",        ShortHour12},
    {"<TIME H>",          [](Context c) { return Padded(Formatted<"H">(c)); }},
    {"<TIME H12H>",       [](Context c) { return Padded(ShortHour12(c)); }},
    {"<TIMEMM>",          Formatted<"NN">},
    {"<TIMESS>",          Formatted<"SS">},
    {"<TIME10S>",         Tenths},
    {"<TIME100S>",        HundredthsText},
});

constexpr auto LateDateTags = std::to_array<Tag>({
    {"<DATEFORMALDAY>",   [](Context c) { return std::string(DayOrdinal(Parts(c).day)); }},
});

constexpr auto Groups = std::to_array<TagGroup>({
    {"<TIMEZONE",         ZoneTags},
    {"<SUN",              SunTags},
    {"<DATE",             DateTags},
    {"<TIME",             TimeTags},
    {"<DATEFORMALDAY>",   LateDateTags},
});
// clang-format on

}  // namespace

std::span<const TagGroup> TimeTagGroups() { return Groups; }

}  // namespace tessaloom
