#include "text/Tags.h"

#include "core/modNumbers.h"
#include "text/Replace.h"
#include "text/TagFilter.h"
#include "text/TagSource.h"
#include "text/VWS.h"
#include "time/modTime.h"

#include <array>

namespace tessaloom {
namespace {

constexpr std::string_view NotAvailable = "N/A";
constexpr int Feeds = 10;

constexpr std::array<std::string_view, 12> Months = {"January",   "February", "March",    "April",
                                                     "May",       "June",     "July",     "August",
                                                     "September", "October",  "November", "December"};

constexpr std::array<std::string_view, 31> Ordinals = {
    "1st",  "2nd",  "3rd",  "4th",  "5th",  "6th",  "7th",  "8th",  "9th",  "10th", "11th",
    "12th", "13th", "14th", "15th", "16th", "17th", "18th", "19th", "20th", "21st", "22nd",
    "23rd", "24th", "25th", "26th", "27th", "28th", "29th", "30th", "31st"};

template <std::size_t N>
std::string_view At(const std::array<std::string_view, N>& names, int number) {
    return number >= 1 && number <= static_cast<int>(N) ? names[static_cast<std::size_t>(number - 1)]
                                                        : std::string_view();
}

void ReplaceGroup(std::string& text, const TagGroup& group, const TagContext& context) {
    if (FindTag(text, group.gate) == std::string_view::npos) return;
    ReplaceTags(text, group.tags, [&](const Tag& tag) { return tag.value(context); });
}

/// The tags of each motion detector.
struct MotionTag {
    std::string_view name;  ///< Behind it stands the feed's number.
    std::string_view format;
};
constexpr MotionTag MotionTags[] = {
    {"<MotionDetectTime", "HH:MM:SS"},
    {"<MotionDetectDate", "MM/DD/YY"},
};

std::string NameOf(const MotionTag& tag, int feed) {
    return std::string(tag.name) + std::to_string(feed) + ">";
}

void ReplaceMotionTag(std::string& text, const MotionTag& motionTag, int feed, double moment) {
    const std::string tag = NameOf(motionTag, feed);
    if (FindTag(text, tag) == std::string_view::npos) return;
    Replace(text, tag,
            moment == 0
                ? std::string(NotAvailable)
                : modNumbers::FormatNI(FormatDate{moment - modTime::HalfSecondBias}, motionTag.format));
}

}  // namespace

std::string_view MonthName(int month) { return At(Months, month); }
std::string_view ShortMonthName(int month) { return At(Months, month).substr(0, 3); }
std::string_view DayOrdinal(int day) { return At(Ordinals, day); }

std::string ShortTime(double timeOfDay) { return modNumbers::FormatNI(FormatDate{timeOfDay}, "H:MM AM/PM"); }
std::string ShortTime24(double timeOfDay) { return modNumbers::FormatNI(FormatDate{timeOfDay}, "HH:MM"); }

void ReplaceMotionTags(std::string& text, const TagSource& source) {
    if (FindTag(text, "<MOTIONDETECT") == std::string_view::npos) return;
    for (int feed = 0; feed < Feeds; ++feed) {
        const double moment = source.LastMotionTime(feed);
        for (const MotionTag& tag : MotionTags) ReplaceMotionTag(text, tag, feed, moment);
    }
}

void ReplaceMissingWeatherTags(std::string& text) {
    for (std::size_t at = FindTag(text, "<CSV"); at != std::string::npos; at = FindTag(text, "<CSV", at)) {
        const std::size_t end = text.find('>', at);
        if (end == std::string::npos) return;
        text.replace(at, end + 1 - at, NotAvailable);
    }
}

void ExpandTags(std::string& text, double now, const TagSource& source) {
    if (text.find('<') == std::string::npos) return;
    const TagContext context{now, now - modTime::HalfSecondBias, source};
    for (const TagGroup& group : TimeTagGroups()) ReplaceGroup(text, group, context);
    ReplaceMotionTags(text, source);
    if (FindTag(text, "<CSV") == std::string_view::npos) return;
    const VWS* weather = source.Weather();
    if (weather && weather->CSVDataValid())
        ReplaceWeatherTags(text, *weather);
    else
        ReplaceMissingWeatherTags(text);
}

std::vector<std::string> AllTags() {
    std::vector<std::string> all;
    for (const TagGroup& group : TimeTagGroups())
        for (const Tag& tag : group.tags) all.emplace_back(tag.name);
    for (const MotionTag& tag : MotionTags)
        for (int feed = 0; feed < Feeds; ++feed) all.push_back(NameOf(tag, feed));
    for (const std::string_view name : WeatherTagNames()) all.emplace_back(name);
    return all;
}

}  // namespace tessaloom
