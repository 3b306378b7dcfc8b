#include "text/Tags.h"

#include <ranges>

#include "core/modNumbers.h"
#include "locale/DateParts.h"
#include "platform/Ascii.h"
#include "support/FakeTime.h"
#include "support/MemoryFileSystem.h"
#include "support/PropertyTable.h"
#include "support/TestLocales.h"
#include "support/Tsv.h"
#include "text/Replace.h"
#include "text/TagSource.h"
#include "text/VWS.h"
#include "time/modTime.h"

namespace tessaloom::testing {
namespace {

class FakeTagSource final : public TagSource {
public:
    double LastMotionTime(int feed) const override { return feed == 3 ? motionTime : 0; }
    const VWS* Weather() const override { return weather; }

    double motionTime = 0;
    const VWS* weather = nullptr;
};

class TagsTest : public ::testing::Test {
protected:
    ~TagsTest() override { modNumbers::InitNumberFormat(EnglishLocale()); }

    std::string Expand(std::string_view tags) {
        std::string text(tags);
        ExpandTags(text, time.Now(), source);
        return text;
    }

    /// A file that can be read makes the data valid; tests then set the readings they need.
    void UseWeather() {
        files["weather.csv"].bytes = "nothing yet";
        weather.SetCSVFile("weather.csv");
        weather.GetCSVData();
        source.weather = &weather;
    }

    FakeTime time{1.0 * DayNumber(2026, 9, 3)};
    CountingOwner owner;
    MemoryFileSystem files;
    VWS weather{owner, time, files};
    FakeTagSource source;
};

TEST_F(TagsTest, DateAndTime) {
    for (const TsvRow& row : ReadTsv(TEST_DATA "/vectors/tags_time.tsv")) {
        const auto number = [&](std::size_t column) { return std::stoi(row[column]); };
        time.Set(DayNumber(number(0), number(1), number(2)), number(3), number(4), std::stod(row[5]));
        EXPECT_EQ(Expand(row[6]), row[7]);
    }
}

TEST_F(TagsTest, EveryHundredthIsShownAsItIs) {
    for (int i = 0; i < 6000; ++i) {
        time.Set(DayNumber(2026, 9, 3), 13, 5, i / 100.0);
        const std::string digits = std::to_string(10000 + i);
        ASSERT_EQ(Expand("<TIME100>"), "13:05:" + digits.substr(1, 2) + "." + digits.substr(3));
    }
}

TEST_F(TagsTest, EveryTagOfTheListIsReplaced) {
    UseWeather();
    for (const std::string& tag : AllTags()) {
        EXPECT_NE(Expand(tag), tag);
        EXPECT_EQ(Expand(tag + "\n" + tag.substr(1)), Expand(tag) + "\n" + tag.substr(1));
    }
}

/// The rule as it is stated, without any short cut.
std::string ExpandedPlainly(std::string text, const TagContext& context) {
    const auto upper = [](std::string s) {
        for (char& c : s) c = ascii::Upper(c);
        return s;
    };
    const auto find = [&](std::string_view tag) { return upper(text).find(upper(std::string(tag))); };
    for (const TagGroup& group : TimeTagGroups()) {
        if (find(group.gate) == std::string::npos) continue;
        for (const Tag& tag : group.tags)
            while (find(tag.name) != std::string::npos)
                text.replace(find(tag.name), tag.name.size(), tag.value(context));
    }
    return text;
}

TEST_F(TagsTest, AnyTextIsExpandedByTheRule) {
    UseWeather();
    std::mt19937 random(5);
    // clang-format off
    const std::vector<std::string> pieces = {
        "<", ">", "<TIME", "<date", "H12H>", "<Time>", "<DATED>", "D>", "<SUN", "RISE>", "<CSV", "wind>",
        "<csvampm>", "<MotionDetectTime", "3>", "\xFF", "\xC3", std::string(1, '\0'), "\u00B0", " ", "x",
        "<TIME100>", "10"};
    // clang-format on
    for (int i = 0; i < 5000; ++i) {
        std::string text;
        while (text.size() < random() % 250) text += pieces[random() % pieces.size()];
        std::string timeTagsAlone = text;
        for (const char* other : {"<CSV", "<MotionDetect"})
            for (std::size_t at = 0; (at = FindTag(timeTagsAlone, other)) != std::string::npos;)
                timeTagsAlone[at] = '(';
        const TagContext context{time.Now(), time.Now() - modTime::HalfSecondBias, source};
        ASSERT_EQ(Expand(timeTagsAlone), ExpandedPlainly(timeTagsAlone, context)) << text;

        const std::string expanded = Expand(text);
        ASSERT_LE(expanded.size(), text.size() * 3) << text;
        ASSERT_EQ(FindTag(expanded, "<TIME>"), std::string::npos) << text;
        source.weather = i % 2 == 0 ? nullptr : &weather;
    }
}

TEST_F(TagsTest, FollowTheUsersLocale) {
    modNumbers::InitNumberFormat(GermanLocale());
    time.Set(DayNumber(2026, 9, 3), 13, 5, 59.7);
    EXPECT_EQ(Expand("<DATE> <TIME10> <TIME12H> <DATEMONTH>"), "03.09.2026 13:05:59,7 01:05:59 PM September");
    UseWeather();
    weather.SetCSVDataS(14, "21.50");
    weather.SetCSVData(14, 21.5);
    EXPECT_EQ(Expand("<csvouttemp> <csvmaxtemptoday>"), "21,50 N/A");
}

TEST_F(TagsTest, ZoneAndSun) {
    using State = ZoneRecord::State;
    ZoneRecord& zone = time.ZoneInForce();
    zone = {State::Daylight, 300, 0, -60, "Eastern Standard Time", "Eastern Daylight Time"};
    time.Set(DayNumber(2026, 11, 1), 1, 59, 59.99);  // this hour is repeated
    EXPECT_EQ(Expand("<TIME> <TIMEZONEABBREV>"), "01:59:59 EDT");
    zone.state = State::Standard;
    EXPECT_EQ(Expand("<TIME> <TIMEZONEABBREV>"), "01:59:59 EST");

    files["timezone.txt"].bytes = "Pacific Standard Time, Pacific";
    modTime::LoadTimeZoneLookup(files);
    zone = {State::Standard, 480, 0, -60, "Pacific Standard Time", "x"};
    EXPECT_EQ(Expand("<TIMEZONE>/<TIMEZONEABBREV>/<TimeZoneLookup>"), "Pacific Standard Time/PST/Pacific");
    zone.standardName.clear();
    EXPECT_EQ(Expand("<TIMEZONEABBREV>"), "N/A");

    modTime::SetStation(70, 0);
    modTime::UseSystemTime(time);  // forgets the sun times of the other station
    time.Set(DayNumber(2026, 1, 15));
    EXPECT_EQ(Expand("<SUNRISE>|<SUNSET>|<SUNRISE24H>|<sunset24h>"), "12:00 AM|12:00 AM|00:00|00:00");
    modTime::SetStation(0, 0);
}

TEST_F(TagsTest, Motion) {
    source.motionTime = DayNumber(2026, 2, 5) + (8 * 3600 + 9 * 60 + 7.9) / 86400;
    EXPECT_EQ(Expand("<MotionDetectTime3> <motiondetectdate3> <MOTIONDETECTTIME0> <MotionDetectDate9>"),
              "08:09:07 02/05/26 N/A N/A");
    EXPECT_EQ(Expand("<MotionDetectTime10> <MotionDetectTime03>"),
              "<MotionDetectTime10> <MotionDetectTime03>");
}

TEST_F(TagsTest, WithoutValidWeatherAllIsNotAvailable) {
    for (const VWS* input : {static_cast<const VWS*>(nullptr), static_cast<const VWS*>(&weather)}) {
        source.weather = input;  // one that has read nothing
        EXPECT_EQ(Expand("Temp <csvouttemp>F <CSVwind><csvsunrise> <csv>"), "Temp N/AF N/AN/A N/A");
        EXPECT_EQ(Expand("<csvanything at all> <csv without end"), "N/A <csv without end");
    }
}

TEST_F(TagsTest, WeatherReadings) {
    UseWeather();
    for (const TsvRow& row : ReadTsv(TEST_DATA "/vectors/tags_weather.tsv")) {
        for (int k = 1; k < VWS::Values; ++k) weather.SetCSVData(k, VWS::Missing);
        for (const auto part : std::views::split(row[0], ';')) {
            const std::string reading(part.begin(), part.end());
            weather.SetCSVData(std::stoi(reading), std::stod(reading.substr(reading.find('=') + 1)));
        }
        EXPECT_EQ(Expand(row[1]), row[2]) << row[1];
    }
}

TEST_F(TagsTest, EachReadingHasTheDecimalsOfItsField) {
    UseWeather();
    struct Tag {
        std::string name;
        int field, decimalsOf;
    };
    // clang-format off
    std::vector<Tag> tags = {
        {"maxtemptoday", 100, 14}, {"mintemptoday", 101, 14}, {"maxtempyesterday", 102, 14},
        {"mintempyesterday", 103, 14}, {"maxgusttoday", 110, 9}, {"maxgustyesterday", 109, 9},
        {"rainyesterday", 112, 16}, {"slbarom", 115, 15}, {"statwind", 106, 8}, {"statdir", 107, 10},
        {"statgust", 108, 9}};
    const char* const names[] = {
        "wind", "gust", "dir", "inhum", "outhum", "intemp", "outtemp", "barom", "totalrain", "dailyrain",
        "hourlyrain", "", "ch1temp", "ch1hum", "ch2temp", "ch2hum", "ch3temp", "ch3hum", "evap", "uvindex",
        "solarrad", "chill", "inheat", "outheat", "dew", "rainrate", "outtemprate", "intemprate", "baromrate",
        "ch1temprate", "ch2temprate", "ch3temprate", "monthlyrain", "yearlyrain"};
    // clang-format on
    for (int number = 8; const char* name : names) {
        if (*name) tags.push_back({name, number, number});
        ++number;
    }
    for (const bool missing : {false, true})
        for (const Tag& tag : tags) {
            for (int k = 1; k < VWS::Values; ++k)
                weather.SetCSVData(k, missing && k == tag.field ? -1000 : 2000 + k);
            for (int f = 1; f < VWS::Texts; ++f) weather.SetCSVDataS(f, f == tag.decimalsOf ? "7.00" : "7.0");
            const std::string expected = missing ? "N/A" : std::to_string(2000 + tag.field) + ".00";
            EXPECT_EQ(Expand("<csv" + tag.name + ">"), expected) << tag.name;
        }
}

TEST(WeatherWords, BelongToTheirCodesAndSectors) {
    // clang-format off
    const std::pair<double, std::string_view> points[] = {
        {0, "N"}, {11.2, "N"}, {11.25, "NNE"}, {33.75, "NE"}, {56.25, "ENE"}, {90, "E"}, {101.25, "ESE"},
        {180, "S"}, {270, "W"}, {326.24, "NW"}, {326.25, "NNW"}, {348.74, "NNW"}, {348.75, "N"},
        {360, "N"}, {-5, "N"}};
    const std::pair<int, std::string_view> words[] = {
        {0, "Clear"}, {10, "Tornado"}, {21, "Thundershowers"}, {22, ""}, {-1, ""}};
    // clang-format on
    for (const auto& [degrees, point] : points) EXPECT_EQ(CompassPoint(degrees), point) << degrees;
    for (const auto& [code, word] : words) EXPECT_EQ(WeatherWord(code), word) << code;
}

TEST(Replace, PutsTheValueInEveryPlace) {
    // clang-format off
    const struct {
        std::string text, tag, value, expected;
    } rows[] = {
        {"<A> <a>x<A>", "<A>",  "1",        "1 1x1"},
        {"<A>",         "<A>",  "-1000",    "N/A"},
        {"<A>",         "<A>",  "-1000.00", "N/A"},
        {"<A>",         "<A>",  "-1000 F",  "-1000 F"},
        {"<A<AB>B>",    "<AB>", "",         ""},             // a replacement may bring the tag about
        {"<A> <A>",     "<A>",  "[<a>]",    "[<a>] [<a>]"},  // one that would repeat for ever
    };
    // clang-format on
    for (auto row : rows) {
        Replace(row.text, row.tag, row.value);
        EXPECT_EQ(row.text, row.expected);
    }
}

}  // namespace
}  // namespace tessaloom::testing
