#include "text/Tags.h"

#include "core/modNumbers.h"
#include "text/Replace.h"
#include "text/TagFilter.h"
#include "text/VWS.h"
#include "time/modTime.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tessaloom {
namespace {

using modNumbers::FormatI;

constexpr std::string_view NotAvailable = "N/A";

struct WeatherTag;
using Source = std::string (*)(const VWS&, const WeatherTag&);

/// A tag of the weather group: where its value stands and how it is shown.
struct WeatherTag {
    std::string_view name;
    Source value;
    int field = 0;   ///< Of `CSVData`.
    int sample = 0;  ///< The field whose text tells how many decimals are shown.
};

bool IsMissing(const VWS& weather, int field) { return weather.CSVData(field) == VWS::Missing; }

/// A reading as a whole number, cut to a sensible size.
int Whole(const VWS& weather, int field) {
    const double value = weather.CSVData(field);
    return std::isnan(value) ? 0 : static_cast<int>(std::lround(std::clamp(value, -1e9, 1e9)));
}

std::string Reading(const VWS& weather, const WeatherTag& tag) {
    return FormatI(weather.CSVData(tag.field), modNumbers::GetFormatI(weather.CSVDataS(tag.sample)));
}

std::string FourDigits(const VWS& weather, const WeatherTag& tag) {
    return FormatI(weather.CSVData(tag.field), "0000");
}
std::string TwoDigits(const VWS& weather, const WeatherTag& tag) {
    return FormatI(weather.CSVData(tag.field), "00");
}
std::string Digits(const VWS& weather, const WeatherTag& tag) {
    return FormatI(weather.CSVData(tag.field), "0");
}

std::string ShortYear(const VWS& weather, const WeatherTag& tag) {
    return FormatI(Whole(weather, tag.field) % 100, "00");
}

std::string Month(const VWS& weather, const WeatherTag& tag) {
    return std::string(MonthName(Whole(weather, tag.field)));
}

std::string LeftPadded(int number, char with) {
    const std::string digits = std::to_string(number);
    return digits.size() < 2 ? with + digits : digits;
}

std::string Hour12(const VWS& weather, const WeatherTag& tag) {
    const int hour = Whole(weather, tag.field) % 12;
    return LeftPadded(hour == 0 ? 12 : hour, ' ');
}

std::string Hour24(const VWS& weather, const WeatherTag& tag) {
    return LeftPadded(Whole(weather, tag.field), '0');
}

std::string Compass(const VWS& weather, const WeatherTag& tag) {
    return std::string(CompassPoint(weather.CSVData(tag.field)));
}

std::string Conditions(const VWS& weather, const WeatherTag& tag) {
    return std::string(WeatherWord(Whole(weather, tag.field)));
}

/// Steady, rising, falling.
struct TrendWords {
    std::string_view steady, rising, falling;
};

std::string OfTrend(const VWS& weather, const WeatherTag& tag, const TrendWords& words) {
    const int trend = Whole(weather, tag.field);
    return std::string(trend > 0 ? words.rising : trend < 0 ? words.falling : words.steady);
}

std::string Trend(const VWS& weather, const WeatherTag& tag) {
    return OfTrend(weather, tag, {"Steady", "Rising", "Falling"});
}

/// The words that a text layer draws as arrows.
std::string TrendArrow(const VWS& weather, const WeatherTag& tag) {
    return OfTrend(weather, tag, {"<trendsteady>", "<trendup>", "<trenddown>"});
}

// clang-format off
constexpr auto FieldTags = std::to_array<WeatherTag>({
    {"<csvyyyy>",             FourDigits,  2},
    {"<csvyy>",               ShortYear,   2},
    {"<csvm>",                TwoDigits,   3},
    {"<csvmonth>",            Month,       3},
    {"<csvd>",                Digits,      4},
    {"<csv12h>",              Hour12,      5},
    {"<csv24h>",              Hour24,      5},
    {"<csvmin>",              TwoDigits,   6},
    {"<csvsec>",              TwoDigits,   7},
    {"<csvwind>",             Reading,     8,  8},
    {"<csvgust>",             Reading,     9,  9},
    {"<csvdir>",              Reading,     10, 10},
    {"<csvcomp>",             Compass,     10},
    {"<csvinhum>",            Reading,     11, 11},
    {"<csvouthum>",           Reading,     12, 12},
    {"<csvintemp>",           Reading,     13, 13},
    {"<csvouttemp>",          Reading,     14, 14},
    {"<csvbarom>",            Reading,     15, 15},
    {"<csvtotalrain>",        Reading,     16, 16},
    {"<csvdailyrain>",        Reading,     17, 17},
    {"<csvhourlyrain>",       Reading,     18, 18},
    {"<csvweather>",          Conditions,  19},
    {"<csvch1temp>",          Reading,     20, 20},
    {"<csvch1hum>",           Reading,     21, 21},
    {"<csvch2temp>",          Reading,     22, 22},
    {"<csvch2hum>",           Reading,     23, 23},
    {"<csvch3temp>",          Reading,     24, 24},
    {"<csvch3hum>",           Reading,     25, 25},
    {"<csvevap>",             Reading,     26, 26},
    {"<csvuvindex>",          Reading,     27, 27},
    {"<csvsolarrad>",         Reading,     28, 28},
    {"<csvchill>",            Reading,     29, 29},
    {"<csvinheat>",           Reading,     30, 30},
    {"<csvoutheat>",          Reading,     31, 31},
    {"<csvdew>",              Reading,     32, 32},
    {"<csvrainrate>",         Reading,     33, 33},
    {"<csvouttemprate>",      Reading,     34, 34},
    {"<csvintemprate>",       Reading,     35, 35},
    {"<csvbaromrate>",        Reading,     36, 36},
    {"<csvch1temprate>",      Reading,     37, 37},
    {"<csvch2temprate>",      Reading,     38, 38},
    {"<csvch3temprate>",      Reading,     39, 39},
    {"<csvmonthlyrain>",      Reading,     40, 40},
    {"<csvyearlyrain>",       Reading,     41, 41},
    {"<csvmaxtemptoday>",     Reading,     VWS::MaxTempToday,      14},
    {"<csvmintemptoday>",     Reading,     VWS::MinTempToday,      14},
    {"<csvmaxtempyesterday>", Reading,     VWS::MaxTempYesterday,  14},
    {"<csvmintempyesterday>", Reading,     VWS::MinTempYesterday,  14},
    {"<csvmaxgusttoday>",     Reading,     VWS::MaxGustToday,      9},
    {"<csvmaxgustyesterday>", Reading,     VWS::MaxGustYesterday,  9},
    {"<csvrainyesterday>",    Reading,     VWS::RainYesterday,     16},
    {"<csvslbarom>",          Reading,     VWS::SeaLevelBarometer, 15},
    {"<csvbaromtrendarrow>",  TrendArrow,  VWS::BarometerTrend},
    {"<csvtemptrendarrow>",   TrendArrow,  VWS::TemperatureTrend},
    {"<csvbaromtrend>",       Trend,       VWS::BarometerTrend},
    {"<csvtemptrend>",        Trend,       VWS::TemperatureTrend},
    {"<csvstatwind>",         Reading,     VWS::StatWind,          8},
    {"<csvstatdir>",          Reading,     VWS::StatDirection,     10},
    {"<csvstatgust>",         Reading,     VWS::StatGust,          9},
    {"<csvstatcomp>",         Compass,     VWS::StatDirection},
});

/// Computed, not read from the file.
struct SunTag {
    std::string_view name;
    double (*timeOfDay)();
    std::string (*shown)(double);
};
constexpr auto SunTags = std::to_array<SunTag>({
    {"<csvsunrise>",    modTime::Sunrise, ShortTime},
    {"<csvsunset>",     modTime::Sunset,  ShortTime},
    {"<csvsunrise24h>", modTime::Sunrise, ShortTime24},
    {"<csvsunset24h>",  modTime::Sunset,  ShortTime24},
});

/// The case of "ampm" chooses that of the result. The first spelling that occurs decides for all of them,
/// because replacing ignores the case; kept: existing documents rely on it.
struct HalfTag {
    std::string_view name, morning, afternoon;
};
constexpr auto HalfTags = std::to_array<HalfTag>({
    {"<csvampm>", "am", "pm"},
    {"<csvAMPM>", "AM", "PM"},
    {"<CSVampm>", "am", "pm"},
    {"<CSVAMPM>", "AM", "PM"},
});
// clang-format on

constexpr std::array<std::string_view, 16> CompassPoints = {"N", "NNE", "NE", "ENE", "E", "ESE", "SE", "SSE",
                                                            "S", "SSW", "SW", "WSW", "W", "WNW", "NW", "NNW"};

constexpr std::array<std::string_view, 22> WeatherWords = {
    "Clear",         "Few Clouds",   "Scattered Clouds",
    "Broken Clouds", "Overcast",     "Drizzle",
    "Rain",          "Frozen Rain",  "Showers",
    "Mist",          "Tornado",      "Fog",
    "Smoke",         "Hail",         "Haze",
    "Ice Crystals",  "Sand",         "Snow Grains",
    "Snow",          "Snow Showers", "Lightning",
    "Thundershowers"};

constexpr int HourField = 5;

void ReplaceHalves(std::string& text, const VWS& weather) {
    for (const HalfTag& tag : HalfTags) {
        if (text.find(tag.name) == std::string::npos) continue;
        const bool morning = Whole(weather, HourField) < 12;
        Replace(text, tag.name,
                IsMissing(weather, HourField) ? NotAvailable : (morning ? tag.morning : tag.afternoon));
    }
}

}  // namespace

std::vector<std::string_view> WeatherTagNames() {
    std::vector<std::string_view> names;
    for (const SunTag& tag : SunTags) names.push_back(tag.name);
    names.insert(names.end(), {HalfTags[0].name, HalfTags[1].name});  // the others are these to a reader
    for (const WeatherTag& tag : FieldTags) names.push_back(tag.name);
    return names;
}

std::string_view CompassPoint(double degrees) {
    if (degrees >= 348.75 || !(degrees >= 11.25)) return CompassPoints[0];
    return CompassPoints[static_cast<std::size_t>((degrees - 11.25) / 22.5) + 1];
}

std::string_view WeatherWord(int code) {
    return code >= 0 && code < static_cast<int>(WeatherWords.size())
               ? WeatherWords[static_cast<std::size_t>(code)]
               : std::string_view();
}

void ReplaceWeatherTags(std::string& text, const VWS& weather) {
    ReplaceTags(text, SunTags, [](const SunTag& tag) { return tag.shown(tag.timeOfDay()); });
    ReplaceHalves(text, weather);
    ReplaceTags(text, FieldTags, [&](const WeatherTag& tag) {
        return IsMissing(weather, tag.field) ? std::string(NotAvailable) : tag.value(weather, tag);
    });
}

}  // namespace tessaloom
