#include "text/Tags.h"

#include "core/modNumbers.h"
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

#include <string>
#include <string_view>

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
