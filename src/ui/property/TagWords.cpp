#include "ui/property/TagWords.h"

#include <QSet>
#include <algorithm>
#include <array>

#include "model/Portfolio.h"
#include "text/Replace.h"
#include "text/Tags.h"
#include "text/TextBox.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

namespace {

using TagWords::Heading;

struct HeadingWords {
    Heading heading;
    std::string_view title;
};

struct Words {
    Heading heading;
    std::string_view tag;
    std::string_view meaning;
};

// clang-format off
constexpr auto Titles = std::to_array<HeadingWords>({
    {Heading::Time,    "Time"},
    {Heading::Date,    "Date"},
    {Heading::Zone,    "Time zone"},
    {Heading::Sun,     "Sunrise and sunset"},
    {Heading::Motion,  "Motion"},
    {Heading::Weather, "Weather"},
    {Heading::Wind,    "Wind"},
    {Heading::Rain,    "Rain"},
    {Heading::Arrows,  "Arrows"},
});

constexpr auto AllHeadings = [] {
    std::array<Heading, Titles.size()> headings{};
    std::transform(Titles.begin(), Titles.end(), headings.begin(),
                   [](const HeadingWords& words) { return words.heading; });
    return headings;
}();

/// In the order of the list. Tags of motion end before the feed's number.
constexpr auto Table = std::to_array<Words>({
    {Heading::Time,    "<TIME>",                "Time, 24-hour"},
    {Heading::Time,    "<TIME12H>",             "Time, 12-hour"},
    {Heading::Time,    "<TIMEAMPM>",            "AM or PM"},
    {Heading::Time,    "<TIME10>",              "Time with tenths of a second"},
    {Heading::Time,    "<TIME100>",             "Time with hundredths of a second"},
    {Heading::Time,    "<TIME1012H>",           "Time with tenths, 12-hour"},
    {Heading::Time,    "<TIME10012H>",          "Time with hundredths, 12-hour"},
    {Heading::Time,    "<TIMEHH>",              "Hour, two digits"},
    {Heading::Time,    "<TIME0H>",              "Hour, two digits (same as <TIMEHH>)"},
    {Heading::Time,    "<TIMEH>",               "Hour"},
    {Heading::Time,    "<TIME H>",              "Hour, with a blank before one digit"},
    {Heading::Time,    "<TIMEHH12H>",           "Hour, 12-hour, two digits"},
    {Heading::Time,    "<TIME0H12H>",           "Hour, 12-hour, two digits (same as <TIMEHH12H>)"},
    {Heading::Time,    "<TIMEH12H>",            "Hour, 12-hour"},
    {Heading::Time,    "<TIME H12H>",           "Hour, 12-hour, with a blank before one digit"},
    {Heading::Time,    "<TIMEMM>",              "Minute, two digits"},
    {Heading::Time,    "<TIMESS>",              "Second, two digits"},
    {Heading::Time,    "<TIME10S>",             "Tenth of a second"},
    {Heading::Time,    "<TIME100S>",            "Hundredth of a second"},
    {Heading::Date,    "<DATE>",                "Date, as your system writes it"},
    {Heading::Date,    "<DATEYYYY>",            "Year"},
    {Heading::Date,    "<DATEYY>",              "Year, two digits"},
    {Heading::Date,    "<DATEMONTH>",           "Name of the month"},
    {Heading::Date,    "<DATESHORTMONTH>",      "Short name of the month"},
    {Heading::Date,    "<DATE0M>",              "Month, two digits"},
    {Heading::Date,    "<DATEM>",               "Month"},
    {Heading::Date,    "<DATE M>",              "Month, with a blank before one digit"},
    {Heading::Date,    "<DATEFORMALDAY>",       "Day as an ordinal, such as 1st"},
    {Heading::Date,    "<DATE0D>",              "Day, two digits"},
    {Heading::Date,    "<DATED>",               "Day"},
    {Heading::Date,    "<DATE D>",              "Day, with a blank before one digit"},
    {Heading::Zone,    "<TIMEZONE>",            "Name of the time zone"},
    {Heading::Zone,    "<TIMEZONEABBREV>",      "Capital letters of the time zone's name"},
    {Heading::Zone,    "<TIMEZONELOOKUP>",      "Your own name for the zone, from timezone.txt"},
    {Heading::Sun,     "<SUNRISE>",             "Sunrise, 12-hour"},
    {Heading::Sun,     "<SUNSET>",              "Sunset, 12-hour"},
    {Heading::Sun,     "<SUNRISE24H>",          "Sunrise, 24-hour"},
    {Heading::Sun,     "<SUNSET24H>",           "Sunset, 24-hour"},
    {Heading::Sun,     "<csvsunrise>",          "Sunrise, 12-hour, with weather data only"},
    {Heading::Sun,     "<csvsunset>",           "Sunset, 12-hour, with weather data only"},
    {Heading::Sun,     "<csvsunrise24h>",       "Sunrise, 24-hour, with weather data only"},
    {Heading::Sun,     "<csvsunset24h>",        "Sunset, 24-hour, with weather data only"},
    {Heading::Motion,  "<MotionDetectTime",     "Time of the last motion, feed"},
    {Heading::Motion,  "<MotionDetectDate",     "Date of the last motion, feed"},
    {Heading::Weather, "<csvweather>",          "Conditions in words"},
    {Heading::Weather, "<csvouttemp>",          "Temperature outdoors"},
    {Heading::Weather, "<csvouttemprate>",      "Change of the temperature outdoors per hour"},
    {Heading::Weather, "<csvmaxtemptoday>",     "Highest temperature today"},
    {Heading::Weather, "<csvmintemptoday>",     "Lowest temperature today"},
    {Heading::Weather, "<csvmaxtempyesterday>", "Highest temperature yesterday"},
    {Heading::Weather, "<csvmintempyesterday>", "Lowest temperature yesterday"},
    {Heading::Weather, "<csvtemptrend>",        "Trend of the temperature in a word"},
    {Heading::Weather, "<csvtemptrendarrow>",   "Trend of the temperature as an arrow"},
    {Heading::Weather, "<csvouthum>",           "Humidity outdoors"},
    {Heading::Weather, "<csvdew>",              "Dew point"},
    {Heading::Weather, "<csvoutheat>",          "Heat index outdoors"},
    {Heading::Weather, "<csvbarom>",            "Air pressure"},
    {Heading::Weather, "<csvslbarom>",          "Air pressure at sea level"},
    {Heading::Weather, "<csvbaromrate>",        "Change of the air pressure per hour"},
    {Heading::Weather, "<csvbaromtrend>",       "Trend of the air pressure in a word"},
    {Heading::Weather, "<csvbaromtrendarrow>",  "Trend of the air pressure as an arrow"},
    {Heading::Weather, "<csvuvindex>",          "UV index"},
    {Heading::Weather, "<csvsolarrad>",         "Solar radiation"},
    {Heading::Weather, "<csvevap>",             "Evaporation"},
    {Heading::Weather, "<csvintemp>",           "Temperature indoors"},
    {Heading::Weather, "<csvintemprate>",       "Change of the temperature indoors per hour"},
    {Heading::Weather, "<csvinhum>",            "Humidity indoors"},
    {Heading::Weather, "<csvinheat>",           "Heat index indoors"},
    {Heading::Weather, "<csvch1temp>",          "Temperature of sensor 1"},
    {Heading::Weather, "<csvch1temprate>",      "Change of the temperature of sensor 1 per hour"},
    {Heading::Weather, "<csvch1hum>",           "Humidity of sensor 1"},
    {Heading::Weather, "<csvch2temp>",          "Temperature of sensor 2"},
    {Heading::Weather, "<csvch2temprate>",      "Change of the temperature of sensor 2 per hour"},
    {Heading::Weather, "<csvch2hum>",           "Humidity of sensor 2"},
    {Heading::Weather, "<csvch3temp>",          "Temperature of sensor 3"},
    {Heading::Weather, "<csvch3temprate>",      "Change of the temperature of sensor 3 per hour"},
    {Heading::Weather, "<csvch3hum>",           "Humidity of sensor 3"},
    {Heading::Weather, "<csvyyyy>",             "Year of the reading"},
    {Heading::Weather, "<csvyy>",               "Year of the reading, two digits"},
    {Heading::Weather, "<csvmonth>",            "Name of the month of the reading"},
    {Heading::Weather, "<csvm>",                "Month of the reading, two digits"},
    {Heading::Weather, "<csvd>",                "Day of the reading"},
    {Heading::Weather, "<csv24h>",              "Hour of the reading"},
    {Heading::Weather, "<csv12h>",              "Hour of the reading, 12-hour"},
    {Heading::Weather, "<csvampm>",             "am or pm of the reading"},
    {Heading::Weather, "<csvAMPM>",             "AM or PM of the reading"},
    {Heading::Weather, "<csvmin>",              "Minute of the reading, two digits"},
    {Heading::Weather, "<csvsec>",              "Second of the reading, two digits"},
    {Heading::Wind,    "<csvwind>",             "Wind speed"},
    {Heading::Wind,    "<csvgust>",             "Gust speed"},
    {Heading::Wind,    "<csvdir>",              "Wind direction in degrees"},
    {Heading::Wind,    "<csvcomp>",             "Wind direction as a compass point"},
    {Heading::Wind,    "<csvchill>",            "Wind chill"},
    {Heading::Wind,    "<csvstatwind>",         "Mean wind speed"},
    {Heading::Wind,    "<csvstatgust>",         "Strongest gust of the same time"},
    {Heading::Wind,    "<csvstatdir>",          "Mean wind direction in degrees"},
    {Heading::Wind,    "<csvstatcomp>",         "Mean wind direction as a compass point"},
    {Heading::Wind,    "<csvmaxgusttoday>",     "Strongest gust today"},
    {Heading::Wind,    "<csvmaxgustyesterday>", "Strongest gust yesterday"},
    {Heading::Rain,    "<csvrainrate>",         "Rain rate"},
    {Heading::Rain,    "<csvhourlyrain>",       "Rain of the hour"},
    {Heading::Rain,    "<csvdailyrain>",        "Rain of the day"},
    {Heading::Rain,    "<csvrainyesterday>",    "Rain yesterday"},
    {Heading::Rain,    "<csvmonthlyrain>",      "Rain of the month"},
    {Heading::Rain,    "<csvyearlyrain>",       "Rain of the year"},
    {Heading::Rain,    "<csvtotalrain>",        "Total rain"},
    {Heading::Arrows,  "<TRENDUP>",             "Arrow up"},
    {Heading::Arrows,  "<TRENDSTEADY>",         "Arrow to the right"},
    {Heading::Arrows,  "<TRENDDOWN>",           "Arrow down"},
});
// clang-format on

QString Wide(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// The number of the feed in the tag of a motion detector of that beginning; "" for other tags.
QString FeedNumber(const QString& tag, const Words& words) {
    if (words.heading != Heading::Motion || !tag.startsWith(Wide(words.tag))) return {};
    return tag.mid(static_cast<qsizetype>(words.tag.size())).chopped(1);
}

/// The tags of the engine that `words` is about.
std::vector<TagWords::Entry> EntriesOf(const Words& words, const std::vector<QString>& tags) {
    std::vector<TagWords::Entry> entries;
    for (const QString& tag : tags) {
        const QString feed = FeedNumber(tag, words);
        if (!feed.isEmpty())
            entries.push_back({words.heading, tag, Wide(words.meaning) + ' ' + feed});
        else if (tag == Wide(words.tag))
            entries.push_back({words.heading, tag, Wide(words.meaning)});
    }
    return entries;
}

std::vector<QString> EngineTags() {
    std::vector<QString> tags;
    for (const std::string& tag : AllTags()) tags.push_back(QString::fromStdString(tag));
    for (const ArrowWord& arrow : ArrowWords()) tags.push_back(Wide(arrow.word));
    return tags;
}

std::vector<TagWords::Entry> MakeAll() {
    std::vector<TagWords::Entry> all;
    const std::vector<QString> tags = EngineTags();
    for (const Words& words : Table)
        for (TagWords::Entry& entry : EntriesOf(words, tags)) all.push_back(std::move(entry));
    return all;
}

}  // namespace

std::span<const Heading> TagWords::Headings() { return AllHeadings; }

QString TagWords::Title(Heading heading) {
    const auto words = std::find_if(Titles.begin(), Titles.end(),
                                    [&](const HeadingWords& row) { return row.heading == heading; });
    return words == Titles.end() ? QString() : Wide(words->title);
}

const std::vector<TagWords::Entry>& TagWords::All() {
    static const std::vector<Entry> Made = MakeAll();
    return Made;
}

bool TagWords::Known(QStringView text) {
    static const QSet<QString> Names = [] {
        QSet<QString> names;
        for (const Entry& entry : All()) names.insert(entry.tag.toUpper());
        return names;
    }();
    return Names.contains(text.toString().toUpper());
}

QString TagWords::Expanded(const Workspace& workspace, const QString& text) {
    std::string expanded = text.toStdString();
    if (const Portfolio* portfolio = workspace.Portfolio())
        ExpandTags(expanded, portfolio->Now(), *portfolio);
    for (const ArrowWord& arrow : ArrowWords()) Replace(expanded, arrow.word, arrow.arrow);
    return QString::fromStdString(expanded);
}

}  // namespace tessaloom
