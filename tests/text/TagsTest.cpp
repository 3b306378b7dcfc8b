#include "text/Tags.h"

#include "core/modNumbers.h"
#include "locale/Ascii.h"
#include "locale/DateParts.h"
#include "support/FakeTime.h"
#include "support/MemoryFileSystem.h"
#include "support/PropertyTable.h"
#include "support/TestLocales.h"
#include "text/Replace.h"
#include "text/TagSource.h"
#include "text/VWS.h"
#include "time/modTime.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace tessaloom {
namespace {

class FakeTagSource final : public TagSource {
public:
    double LastMotionTime(int feed) const override { return feed == motionFeed ? motionTime : 0; }
    const VWS* Weather() const override { return weather; }

    int motionFeed = -1;
    double motionTime = 0;
    const VWS* weather = nullptr;
};

class TagsTest : public ::testing::Test {
protected:
    ~TagsTest() override { modNumbers::InitNumberFormat(testing::EnglishLocale()); }

    std::string Expand(std::string text) {
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

    testing::FakeTime time{1.0 * DayNumber(2026, 9, 3)};
    testing::CountingOwner owner;
    testing::MemoryFileSystem files;
    VWS weather{owner, time, files};
    FakeTagSource source;
};

struct Row {
    std::string_view text, expected;
};

TEST_F(TagsTest, DateAndTime) {
    time.Set(DayNumber(2026, 9, 3), 13, 5, 59.7);
    constexpr Row rows[] = {
        {"<DATE>",                                            "9/3/2026"                               },
        {"<DATEYY>",                                          "26"                                     },
        {"<DATEYYYY>",                                        "2026"                                   },
        {"<DATE0M>",                                          "09"                                     },
        {"<DATEM>",                                           "9"                                      },
        {"<DATE M>",                                          " 9"                                     },
        {"<DATEMONTH>",                                       "September"                              },
        {"<DATE0D>",                                          "03"                                     },
        {"<DATED>",                                           "3"                                      },
        {"<DATE D>",                                          " 3"                                     },
        {"<DATESHORTMONTH>",                                  "Sep"                                    },
        {"<DATEFORMALDAY>",                                   "3rd"                                    },
        {"<TIME>",                                            "13:05:59"                               },
        {"<TIME12H>",                                         "01:05:59 PM"                            },
        {"<TIMEAMPM>",                                        "PM"                                     },
        {"<TIME10>",                                          "13:05:59.7"                             },
        {"<TIME100>",                                         "13:05:59.70"                            },
        {"<TIME1012H>",                                       "01:05:59.7 PM"                          },
        {"<TIME10012H>",                                      "01:05:59.70 PM"                         },
        {"<TIMEHH>",                                          "13"                                     },
        {"<TIME0H>",                                          "13"                                     },
        {"<TIMEH>",                                           "13"                                     },
        {"<TIMEHH12H>",                                       "01"                                     },
        {"<TIME0H12H>",                                       "01"                                     },
        {"<TIMEH12H>",                                        "1"                                      },
        {"<TIME H>",                                          "13"                                     },
        {"<TIME H12H>",                                       " 1"                                     },
        {"<TIMEMM>",                                          "05"                                     },
        {"<TIMESS>",                                          "59"                                     },
        {"<TIME10S>",                                         "7"                                      },
        {"<TIME100S>",                                        "70"                                     },
        {"<time>",                                            "13:05:59"                               },
        {"at <Time> on <dateMonth> <DATEFORMALDAY>, <time>!", "at 13:05:59 on September 3rd, 13:05:59!"},
        {"<TIMES> <DATE <unknown>",                           "<TIMES> <DATE <unknown>"                },
        {"a < b > c",                                         "a < b > c"                              },
        {"",                                                  ""                                       },
    };
    for (const Row& row : rows) EXPECT_EQ(Expand(std::string(row.text)), row.expected) << row.text;
}

TEST_F(TagsTest, DateAndTimeAtTheEdges) {
    struct {
        int month, day, hour;
        double seconds;
        Row row;
    } const rows[] = {
        {10, 31, 0,  0,       {"<DATE M>|<DATE D>|<DATEFORMALDAY>", "10|31|31st"}                },
        {5,  22, 0,  0,       {"<DATESHORTMONTH>|<DATEFORMALDAY>", "May|22nd"}                   },
        {1,  11, 0,  0,       {"<DATEFORMALDAY>|<TIMEH12H>|<TIME H>|<TIMEAMPM>", "11th|12| 0|AM"}},
        {12, 31, 23, 3599.99, {"<TIME100> <DATEYYYY>", "23:59:59.99 2026"}                       },
        {1,  1,  12, 0.01,    {"<TIME12H> <TIME100S>", "12:00:00 PM 01"}                         },
        {7,  1,  9,  0.29,    {"<TIME10>|<TIME100S>|<TIME H12H>", "09:00:00.2|29| 9"}            },
    };
    for (const auto& row : rows) {
        time.Set(DayNumber(2026, row.month, row.day), row.hour, 0, row.seconds);
        EXPECT_EQ(Expand(std::string(row.row.text)), row.row.expected);
    }
}

TEST_F(TagsTest, AtTheTurnsOfTheCalendar) {
    constexpr std::string_view All =
        "<DATE> <DATEYYYY>-<DATE0M>-<DATE0D> <DATESHORTMONTH> <DATEFORMALDAY> <TIME> <TIME12H> <TIME1012H>";
    // clang-format off
    struct {
        const char* what;
        int year, month, day, hour, minute;
        double second;
        std::string_view expected;
    } const rows[] = {
        {"midnight",          2026, 3, 1,  0, 0, 0,      "3/1/2026 2026-03-01 Mar 1st 00:00:00 12:00:00 AM 12:00:00.0 AM"},
        {"a tick later",      2026, 3, 1,  0, 0, 0.01,   "3/1/2026 2026-03-01 Mar 1st 00:00:00 12:00:00 AM 12:00:00.0 AM"},
        {"a tick before",     2026, 2, 28, 23, 59, 59.99, "2/28/2026 2026-02-28 Feb 28th 23:59:59 11:59:59 PM 11:59:59.9 PM"},
        {"before noon",       2026, 2, 28, 11, 59, 59.99, "2/28/2026 2026-02-28 Feb 28th 11:59:59 11:59:59 AM 11:59:59.9 AM"},
        {"noon",              2026, 2, 28, 12, 0, 0,      "2/28/2026 2026-02-28 Feb 28th 12:00:00 12:00:00 PM 12:00:00.0 PM"},
        {"one in the night",  2026, 2, 28, 0, 59, 60,     "2/28/2026 2026-02-28 Feb 28th 01:00:00 01:00:00 AM 01:00:00.0 AM"},
        {"half a second",     2026, 2, 28, 13, 5, 59.5,   "2/28/2026 2026-02-28 Feb 28th 13:05:59 01:05:59 PM 01:05:59.5 PM"},
        {"end of the year",   2026, 12, 31, 23, 59, 59.99, "12/31/2026 2026-12-31 Dec 31st 23:59:59 11:59:59 PM 11:59:59.9 PM"},
        {"New Year",          2027, 1, 1,  0, 0, 0,       "1/1/2027 2027-01-01 Jan 1st 00:00:00 12:00:00 AM 12:00:00.0 AM"},
        {"leap day",          2028, 2, 29, 6, 7, 8.9,     "2/29/2028 2028-02-29 Feb 29th 06:07:08 06:07:08 AM 06:07:08.9 AM"},
        {"after it",          2028, 3, 1,  0, 0, 0,       "3/1/2028 2028-03-01 Mar 1st 00:00:00 12:00:00 AM 12:00:00.0 AM"},
    };
    // clang-format on
    for (const auto& row : rows) {
        time.Set(DayNumber(row.year, row.month, row.day), row.hour, row.minute, row.second);
        EXPECT_EQ(Expand(std::string(All)), row.expected) << row.what;
    }
}

TEST_F(TagsTest, TheHourThatIsRepeatedShowsItsZone) {
    ZoneRecord& zone = time.ZoneInForce();
    zone = ZoneRecord{ZoneRecord::State::Daylight, 300, 0, -60, "Eastern Standard Time",
                      "Eastern Daylight Time"};
    time.Set(DayNumber(2026, 11, 1), 1, 59, 59.99);
    EXPECT_EQ(Expand("<TIME> <TIMEZONEABBREV>"), "01:59:59 EDT");
    zone.state = ZoneRecord::State::Standard;
    time.Set(DayNumber(2026, 11, 1), 1, 0, 0);
    EXPECT_EQ(Expand("<TIME> <TIMEZONEABBREV>"), "01:00:00 EST");
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
    const std::vector<std::string> pieces = {"<",         ">",
                                             "<TIME",     "<date",
                                             "H12H>",     "<Time>",
                                             "<DATED>",   "D>",
                                             "<SUN",      "RISE>",
                                             "<CSV",      "wind>",
                                             "<csvampm>", "<MotionDetectTime",
                                             "3>",        "\xFF",
                                             "\xC3",      std::string(1, '\0'),
                                             "\u00B0",    " ",
                                             "x",         "<TIME100>",
                                             "10"};
    for (int i = 0; i < 5000; ++i) {
        std::string text;
        while (text.size() < random() % 250) text += pieces[random() % pieces.size()];
        std::string timeTagsAlone = text;
        for (const char* other : {"<CSV", "<MotionDetect"})
            for (auto at = FindTag(timeTagsAlone, other); at != std::string::npos;
                 at = FindTag(timeTagsAlone, other))
                timeTagsAlone[at] = '(';
        const TagContext context{time.Now(), time.Now() - modTime::HalfSecondBias, source};
        ASSERT_EQ(Expand(timeTagsAlone), ExpandedPlainly(timeTagsAlone, context)) << text;

        const std::string expanded = Expand(text);
        ASSERT_LE(expanded.size(), text.size() * 3) << text;
        ASSERT_EQ(FindTag(expanded, "<TIME>"), std::string::npos) << text;
        source.weather = i % 2 == 0 ? nullptr : &weather;
    }
}

TEST_F(TagsTest, EveryHundredthIsShownAsItIs) {
    for (int i = 0; i < 6000; ++i) {
        time.Set(DayNumber(2026, 9, 3), 13, 5, i / 100.0);
        const std::string shown = Expand("<TIME100>");
        const std::string digits = std::to_string(10000 + i);
        ASSERT_EQ(shown, "13:05:" + digits.substr(1, 2) + "." + digits.substr(3));
    }
}

TEST_F(TagsTest, FollowTheUsersLocale) {
    modNumbers::InitNumberFormat(testing::GermanLocale());
    time.Set(DayNumber(2026, 9, 3), 13, 5, 59.7);
    EXPECT_EQ(Expand("<DATE> <TIME10> <TIME12H> <DATEMONTH>"), "03.09.2026 13:05:59,7 01:05:59 PM September");
    UseWeather();
    weather.SetCSVDataS(14, "21.50");
    weather.SetCSVData(14, 21.5);
    EXPECT_EQ(Expand("<csvouttemp> <csvmaxtemptoday>"), "21,50 N/A");
}

TEST_F(TagsTest, ZoneAndSun) {
    modTime::SetStation(52.5, 13.4);
    files["timezone.txt"].bytes = "Pacific Standard Time, Pacific";
    modTime::LoadTimeZoneLookup(files);
    time.ZoneInForce() = ZoneRecord{ZoneRecord::State::Standard, 480, 0, -60, "Pacific Standard Time", "x"};
    EXPECT_EQ(Expand("<TIMEZONE>/<TIMEZONEABBREV>/<TimeZoneLookup>"), "Pacific Standard Time/PST/Pacific");
    time.ZoneInForce().standardName.clear();
    EXPECT_EQ(Expand("<TIMEZONEABBREV>"), "N/A");

    modTime::SetStation(70, 0);
    modTime::UseSystemTime(time);  // forgets the sun times of the other station
    EXPECT_EQ(Expand("<SUNRISE>|<SUNSET>|<SUNRISE24H>|<sunset24h>"), "12:00 AM|12:00 AM|00:00|00:00");
    modTime::SetStation(0, 0);
}

TEST_F(TagsTest, Motion) {
    source.motionFeed = 3;
    source.motionTime = DayNumber(2026, 2, 5) + (8 * 3600 + 9 * 60 + 7.9) / 86400;
    EXPECT_EQ(Expand("<MotionDetectTime3> <motiondetectdate3> <MOTIONDETECTTIME0> <MotionDetectDate9>"),
              "08:09:07 02/05/26 N/A N/A");
    EXPECT_EQ(Expand("<MotionDetectTime10> <MotionDetectTime03>"),
              "<MotionDetectTime10> <MotionDetectTime03>");
}

TEST_F(TagsTest, WithoutValidWeatherAllIsNotAvailable) {
    constexpr Row rows[] = {
        {"Temp <csvouttemp>F",                    "Temp N/AF"           },
        {"<CSVwind><csvsunrise> <csv>",           "N/AN/A N/A"          },
        {"<csvanything at all> <csv without end", "N/A <csv without end"},
    };
    for (const Row& row : rows) EXPECT_EQ(Expand(std::string(row.text)), row.expected);
    source.weather = &weather;  // an input that has read nothing
    for (const Row& row : rows) EXPECT_EQ(Expand(std::string(row.text)), row.expected);
}

TEST_F(TagsTest, WeatherReadings) {
    UseWeather();
    struct Reading {
        int field;
        const char* text;
        double value;
    };
    for (const Reading& reading : {
             Reading{2,  "2026",   2026  },
             {3,  "7",      7     },
             {4,  "9",      9     },
             {5,  "0",      0     },
             {6,  "5",      5     },
             {7,  "8",      8     },
             {8,  "3.2",    3.2   },
             {10, "350",    350   },
             {14, "21.50",  21.5  },
             {15, "1013.2", 1013.2},
             {19, "19",     19    }
    }) {
        weather.SetCSVDataS(reading.field, reading.text);
        weather.SetCSVData(reading.field, reading.value);
    }
    weather.SetCSVData(VWS::MaxTempToday, 25);
    weather.SetCSVData(VWS::BarometerTrend, 1);
    weather.SetCSVData(VWS::TemperatureTrend, -1);
    weather.SetCSVData(VWS::StatDirection, 11.25);
    constexpr Row rows[] = {
        {"<csvyyyy>-<csvyy>-<csvm>-<csvd> <csvmonth>",       "2026-26-07-9 July"     },
        {"<csv12h>:<csvmin>:<csvsec> <csv24h>",              "12:05:08 00"           },
        {"<csvwind> <csvcomp> <CSVSTATCOMP> <csvweather>",   "3.2 N NNE Snow Showers"},
        {"<csvouttemp> <csvmaxtemptoday> <csvmintemptoday>", "21.50 25.00 N/A"       },
        {"<CSVBaromTrend> <csvtemptrend>",                   "Rising Falling"        },
        {"<csvbaromtrendarrow><CSVTEMPTRENDARROW>",          "<trendup><trenddown>"  },
        {"<csvgust> <csvslbarom>",                           "N/A N/A"               },
        {"<csvampm>",                                        "am"                    },
        {"<csvAMPM>",                                        "AM"                    },
        {"<CSVampm> <CSVampm>",                              "am am"                 },
        {"<CSVAMPM>",                                        "AM"                    },
        {"<CSVAMPM> <csvampm>",                              "am am"                 },
        {"<csvunknown>",                                     "<csvunknown>"          },
    };
    for (const Row& row : rows) EXPECT_EQ(Expand(std::string(row.text)), row.expected) << row.text;
    weather.SetCSVData(5, 13);
    EXPECT_EQ(Expand("<csv12h> <csv24h> <csvAMPM>"), " 1 13 PM");
}

TEST_F(TagsTest, EachReadingHasTheDecimalsOfItsField) {
    UseWeather();
    struct Tag {
        const char* name;
        int field, decimalsOf;
    };
    constexpr Tag tags[] = {
        {"wind",             8,   8 },
        {"gust",             9,   9 },
        {"dir",              10,  10},
        {"inhum",            11,  11},
        {"outhum",           12,  12},
        {"intemp",           13,  13},
        {"outtemp",          14,  14},
        {"barom",            15,  15},
        {"totalrain",        16,  16},
        {"dailyrain",        17,  17},
        {"hourlyrain",       18,  18},
        {"ch1temp",          20,  20},
        {"ch1hum",           21,  21},
        {"ch2temp",          22,  22},
        {"ch2hum",           23,  23},
        {"ch3temp",          24,  24},
        {"ch3hum",           25,  25},
        {"evap",             26,  26},
        {"uvindex",          27,  27},
        {"solarrad",         28,  28},
        {"chill",            29,  29},
        {"inheat",           30,  30},
        {"outheat",          31,  31},
        {"dew",              32,  32},
        {"rainrate",         33,  33},
        {"outtemprate",      34,  34},
        {"intemprate",       35,  35},
        {"baromrate",        36,  36},
        {"ch1temprate",      37,  37},
        {"ch2temprate",      38,  38},
        {"ch3temprate",      39,  39},
        {"monthlyrain",      40,  40},
        {"yearlyrain",       41,  41},
        {"maxtemptoday",     100, 14},
        {"mintemptoday",     101, 14},
        {"maxtempyesterday", 102, 14},
        {"mintempyesterday", 103, 14},
        {"maxgusttoday",     110, 9 },
        {"maxgustyesterday", 109, 9 },
        {"rainyesterday",    112, 16},
        {"slbarom",          115, 15},
        {"statwind",         106, 8 },
        {"statdir",          107, 10},
        {"statgust",         108, 9 },
    };
    const auto digits = [](int number, int decimals) {
        std::string text = std::to_string(number);
        if (decimals > 0) text += "." + std::string(static_cast<std::size_t>(decimals), '0');
        return text;
    };
    for (const bool missing : {false, true})
        for (const Tag& tag : tags) {
            for (int k = 1; k < VWS::Values; ++k)
                weather.SetCSVData(k, missing && k == tag.field ? -1000 : 2000 + k);
            for (int f = 1; f < VWS::Texts; ++f)
                weather.SetCSVDataS(f, digits(7, f == tag.decimalsOf ? 2 : 1));
            const std::string expected = missing ? "N/A" : digits(2000 + tag.field, 2);
            EXPECT_EQ(Expand("<csv" + std::string(tag.name) + ">"), expected) << tag.name;
        }
}

TEST_F(TagsTest, MissingReadingsAndOddOnes) {
    UseWeather();
    constexpr Row missing[] = {
        {"<csvyyyy><csvyy><csvm><csvmonth><csvd>",    "N/AN/AN/AN/AN/A"},
        {"<csv12h><csv24h><csvAMPM><csvmin><csvsec>", "N/AN/AN/AN/AN/A"},
        {"<csvcomp> <csvstatcomp> <csvweather>",      "N/A N/A N/A"    },
        {"<csvbaromtrend> <csvtemptrendarrow>",       "N/A N/A"        },
    };
    for (const Row& row : missing) EXPECT_EQ(Expand(std::string(row.text)), row.expected);
    struct {
        int field;
        double value;
        Row row;
    } const rows[] = {
        {2,   2007,  {"<csvyy>", "07"}                                             },
        {3,   13,    {"<csvmonth>|", "|"}                                          },
        {5,   12,    {"<csv12h><csvampm>", "12pm"}                                 },
        {5,   23,    {"<csv12h> <csv24h>", "11 23"}                                },
        {5,   1,     {"<csv12h> <csv24h>", " 1 01"}                                },
        {19,  22,    {"<csvweather>|", "|"}                                        },
        {19,  1e300, {"<csvweather>|", "|"}                                        },
        {10,  720,   {"<csvcomp>", "N"}                                            },
        {104, 0,     {"<CSVBAROMTRENDARROW><csvbaromtrend>", "<trendsteady>Steady"}},
    };
    for (const auto& row : rows) {
        weather.SetCSVData(row.field, row.value);
        EXPECT_EQ(Expand(std::string(row.row.text)), row.row.expected);
    }
}

TEST(CompassPoint, IncludesTheLowerBoundOfItsSector) {
    struct {
        double degrees;
        std::string_view point;
    } const rows[] = {
        {0,      "N"  },
        {11.2,   "N"  },
        {11.25,  "NNE"},
        {33.75,  "NE" },
        {56.25,  "ENE"},
        {90,     "E"  },
        {101.25, "ESE"},
        {180,    "S"  },
        {270,    "W"  },
        {326.24, "NW" },
        {326.25, "NNW"},
        {348.74, "NNW"},
        {348.75, "N"  },
        {360,    "N"  },
        {-5,     "N"  }
    };
    for (const auto& row : rows) EXPECT_EQ(CompassPoint(row.degrees), row.point) << row.degrees;
    EXPECT_EQ(WeatherWord(0), "Clear");
    EXPECT_EQ(WeatherWord(10), "Tornado");
    EXPECT_EQ(WeatherWord(21), "Thundershowers");
    EXPECT_EQ(WeatherWord(22), "");
}

TEST(Replace, PutsTheValueInEveryPlace) {
    struct {
        std::string text, tag, value, expected;
    } const rows[] = {
        {"<A> <a>x<A>", "<A>",  "1",        "1 1x1"      },
        {"<A>",         "<A>",  "-1000",    "N/A"        },
        {"<A>",         "<A>",  "-1000.00", "N/A"        },
        {"<A>",         "<A>",  "-1000 F",  "-1000 F"    },
        {"<A<AB>B>",    "<AB>", "",         ""           }, // a replacement may bring the tag about
        {"<A> <A>",     "<A>",  "[<a>]",    "[<a>] [<a>]"}, // one that would repeat for ever
        {"no tag",      "<A>",  "1",        "no tag"     },
    };
    for (auto row : rows) {
        Replace(row.text, row.tag, row.value);
        EXPECT_EQ(row.text, row.expected);
    }
}

}  // namespace
}  // namespace tessaloom
