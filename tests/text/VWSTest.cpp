#include "text/VWS.h"

#include "core/modNumbers.h"
#include "locale/DateParts.h"
#include "support/CaughtReports.h"
#include "support/FakeTime.h"
#include "support/FaultyFileSystem.h"
#include "support/MemoryFileSystem.h"
#include "support/PropertyTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <map>
#include <numbers>
#include <random>
#include <string>
#include <vector>

namespace tessaloom {
namespace {

using testing::Number;
using testing::Plain;

/// A record's text: `last` is the number of its last field, counting the empty one at the end.
std::string RecordText(const std::map<int, std::string>& fields, const char* version = "1.01",
                       int last = 41) {
    std::map<int, std::string> all = {
        {1, version},
        {2, "2026" },
        {3, "7"    },
        {4, "9"    },
        {5, "12"   },
        {6, "0"    },
        {7, "0"    }
    };
    for (const auto& [k, value] : fields) all[k] = value;
    std::string text;
    for (int k = 0; k < last; ++k) {
        if (k > 0) text += ',';
        text += all.contains(k) ? all[k] : "0";
    }
    return text;
}

class VWSTest : public ::testing::Test {
protected:
    VWSTest() { weather.SetCSVFile("w.csv"); }

    bool Read(const std::string& text) {
        files["w.csv"].bytes = text;
        return weather.GetCSVData();
    }
    bool Read(const std::map<int, std::string>& fields) { return Read(RecordText(fields)); }
    double At(int k) const { return weather.CSVData(k); }

    testing::FakeTime time{1.0 * DayNumber(2026, 7, 9)};
    testing::CountingOwner owner;
    testing::MemoryFileSystem files;
    VWS weather{owner, time, files};
};

TEST(VWS, ClampsAndTellsEveryStoredProperty) {
    using V = VWS;
    testing::FakeTime time;
    testing::CountingOwner owner;
    testing::MemoryFileSystem files;
    V weather(owner, time, files);
    // clang-format off
    const testing::Property<V> rows[] = {
        Number<V, &V::CSVDelay, &V::SetCSVDelay>("CSVDelay", 0, 0, 86400),
        Number<V, &V::CSVBaseTime, &V::SetCSVBaseTime>("CSVBaseTime", 0, 0, 86400),
        Number<V, &V::CSVWindStatisticsInterval, &V::SetCSVWindStatisticsInterval>("Wind", 60, 0, 86400),
        Number<V, &V::CSVBarometricTrendThreshold, &V::SetCSVBarometricTrendThreshold>("Barometer", 0.05, 0, 1000),
        Number<V, &V::CSVTemperatureTrendThreshold, &V::SetCSVTemperatureTrendThreshold>("Temperature", 1, 0, 1000),
        Number<V, &V::CSVBarometerOffset, &V::SetCSVBarometerOffset>("Offset", 0, -1000, 1000),
        Number<V, &V::CSVAltitude, &V::SetCSVAltitude>("Altitude", 0, -2000, 40000),
        Number<V, &V::CSVAltitudeUnits, &V::SetCSVAltitudeUnits>("AltitudeUnits", 0, 0, 1),
        Number<V, &V::CSVTemperatureUnits, &V::SetCSVTemperatureUnits>("TemperatureUnits", 0, 0, 1),
        Plain<V, &V::CSVEnabled, &V::SetCSVEnabled>("CSVEnabled", false, true),
        Plain<V, &V::CSVFile, &V::SetCSVFile>("CSVFile", std::string(), std::string("a.csv")),
    };
    // clang-format on
    testing::CheckProperties<V>(weather, owner, rows);
}

TEST_F(VWSTest, BeginsWithoutData) {
    EXPECT_FALSE(weather.CSVDataValid());
    for (int k = 1; k < VWS::Values; ++k) EXPECT_EQ(At(k), -1000);
    for (int k = 1; k < VWS::Texts; ++k) EXPECT_EQ(weather.CSVDataS(k), "-1000");
    EXPECT_EQ(At(-1), -1000);
    EXPECT_EQ(At(120), -1000);
    EXPECT_EQ(weather.CSVDataS(100), "-1000");
}

TEST_F(VWSTest, EnablingMakesItDueAtOnce) {
    weather.SetCSVDelay(15);
    weather.SetCSVEnabled(true);
    EXPECT_TRUE(weather.Due());
    weather.SetNextTime();
    EXPECT_FALSE(weather.Due());
    time.Advance(15);
    EXPECT_TRUE(weather.Due());
    weather.SetCSVEnabled(false);
    EXPECT_FALSE(weather.Due());
}

TEST_F(VWSTest, TakesOnlyWellFormedNewRecords) {
    const auto at = [](const char* second, const char* version = "1.01", int last = 41) {
        return RecordText(
            {
                {7, second}
        },
            version, last);
    };
    // A text of this many characters altogether; field 20 makes it as long.
    const auto ofLength = [&](const char* second, std::size_t characters, const std::string& filler = "1") {
        std::string padding;
        for (std::size_t i = at(second).size(); i < characters; ++i) padding += filler;
        return RecordText({
            {7, second       },
            {0, padding + "0"}
        });
    };
    // clang-format off
    struct {
        const char* what;
        std::string text;
        bool taken;
    } const rows[] = {
        {"version 1 with the fields of 1.01",     at("0", "1", 41),                  false},
        {"version 1",                             at("0", "1", 39),                  true},
        {"the same time again",                   at("0", "1", 39),                  false},
        {"version 1.01",                          at("15"),                          true},
        {"1.01 with a field too few",             at("30", "1.01", 40),              false},
        {"1.01 with a value in field 41",         at("30", "1.01", 42),              false},
        {"1.01 that ends with a comma",           at("30", "1.01", 40) + ",",        true},
        {"1 with a field too few",                at("31", "1", 38),                 false},
        {"1 with a value in field 39",            at("31", "1", 40),                 false},
        {"a new line at the end",                 at("45") + "\r\n",                 true},
        {"another version",                       at("46", "2"),                     false},
        {"another version of a hundred fields",   at("46", "1.01", 100),             false},
        {"no version",                            at("46", ""),                      false},
        {"no number",                             at("46", "x"),                     false},
        {"1000 characters",                       ofLength("46", 1000),              true},
        {"1001 characters",                       ofLength("47", 1001),              false},
        {"1000 characters of two bytes",          ofLength("48", 1000, "\u00B0"),    true},
        {"1000 bytes of another encoding",        ofLength("49", 1000, "\xB0"),      true},
        {"1000 characters and a line end",        ofLength("50", 1000) + "\n",       false},
        {"cut short",                             at("51").substr(0, 60),            false},
        {"no day of the calendar",                RecordText({{3, "2"}, {4, "30"}}), false},
        {"29 February of another year",           RecordText({{3, "2"}, {4, "29"}}), false},
        {"day and month exchanged",               RecordText({{3, "13"}, {4, "5"}}), false},
        {"no time of day",                        RecordText({{5, "24"}}),           false},
        {"no time at the end of a year",          RecordText({{3, "12"}, {4, "30"}, {5, "x"}}), false},
        {"empty date",                            RecordText({{2, ""}, {3, ""}, {4, ""}}), false},
        {"empty second",                          at(""),                            false},
        {"empty",                                 "",                                false},
        {"commas",                                std::string(41, ','),              false},
        {"bytes",                                 std::string("\0\xFF,1.01,\n", 9), false},
        {"29 February of a leap year",            RecordText({{2, "2028"}, {3, "2"}, {4, "29"}}), true},
        {"an earlier time",                       at("52"),                          true},
    };
    // clang-format on
    for (const auto& row : rows) {
        EXPECT_EQ(Read(row.text), row.taken) << row.what;
        EXPECT_TRUE(weather.CSVDataValid()) << row.what;
    }
    EXPECT_NEAR(weather.CSVLastTime(), DayNumber(2026, 7, 9) + (12 * 3600 + 52) / 86400.0, 1e-9);
}

TEST_F(VWSTest, ReadsFieldsAsTheyStand) {
    // clang-format off
    struct {
        std::string text;
        double value;
        std::string kept;
        int reports;
    } const rows[] = {
        {"21.50",   21.5,  "21.50",   0},
        {" 7 ",     7,     " 7 ",     0},
        {"-1000",   -1000, "-1000",   0},
        {"",        -1000, "-1000",   0},
        {"  ",      -1000, "-1000",   0},
        {"x",       0,     "x",       1},
        {"NaN",     0,     "NaN",     1},
        {"inf",     0,     "inf",     1},
        {"1e400",   0,     "1e400",   1},
        {"1e300",   1e300, "1e300",   0},
        {"\xB0",    0,     "\u00B0",  1},
    };
    // clang-format on
    int second = 0;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        testing::CaughtReports reports;
        ASSERT_TRUE(Read({
            {7,                       std::to_string(second++)},
            {VWS::OutdoorTemperature, row.text                }
        }));
        EXPECT_EQ(At(VWS::OutdoorTemperature), row.value);
        EXPECT_EQ(weather.CSVDataS(VWS::OutdoorTemperature), row.kept);
        EXPECT_EQ(reports.Count(), row.reports);
    }
    EXPECT_EQ(At(41), -1000);  // the element behind the appended comma
    EXPECT_EQ(weather.CSVDataS(41), "-1000");
}

/// A file that is written to while it is read, or was a moment ago.
class BusyFiles final : public testing::FaultyFileSystem {
public:
    explicit BusyFiles(testing::MemoryFileSystem& files) : FaultyFileSystem(files), files_(files) {}

    std::optional<FileStamp> Stamp(std::string_view path) const override {
        auto stamp = FaultyFileSystem::Stamp(path);
        if (stamp) stamp->settled = settled;
        return stamp;
    }
    std::optional<std::string> ReadFile(std::string_view path, std::size_t limit) override {
        auto text = FaultyFileSystem::ReadFile(path, limit);
        if (vanishes) files_.DeleteFile(path);
        if (grows) files_[path].bytes += "5";
        return text;
    }

    bool settled = true, grows = false, vanishes = false;

private:
    testing::MemoryFileSystem& files_;
};

TEST_F(VWSTest, TriesAHalfWrittenFileAgain) {
    BusyFiles busy(files);
    VWS input(owner, time, busy);
    input.SetCSVFile("w.csv");
    const auto put = [&](int second, const char* lineEnd) {
        files["w.csv"].bytes = RecordText({
                                   {7, std::to_string(second)}
        }) +
                               lineEnd;
    };
    testing::CaughtReports reports;
    put(1, "");
    busy.grows = true;
    EXPECT_FALSE(input.GetCSVData());
    EXPECT_TRUE(input.CSVDataValid());
    busy.grows = false;
    EXPECT_TRUE(input.GetCSVData());
    EXPECT_EQ(input.CSVData(40), 5);  // with what was still missing then

    put(2, "");
    busy.settled = false;
    EXPECT_FALSE(input.GetCSVData());  // its last field may be cut short
    EXPECT_TRUE(input.GetCSVData());   // a station that keeps our time is not put off for ever
    put(3, "\r\n");
    EXPECT_TRUE(input.GetCSVData());

    put(4, "\n");
    busy.settled = true;
    busy.vanishes = true;
    EXPECT_FALSE(input.GetCSVData());
    EXPECT_EQ(input.CSVData(7), 3);
    EXPECT_EQ(reports.Count(), 0);
}

TEST_F(VWSTest, ReportsAFileThatStaysBadOnce) {
    testing::CaughtReports reports;
    for (const std::string bad : {"cut short", "", "no date"}) {
        const std::string text = bad == "no date" ? RecordText({
                                                        {3, "14"}
        })
                                                  : bad;
        EXPECT_FALSE(Read(text));
        EXPECT_EQ(reports.CountAbout("w.csv"), 0) << bad;
        for (int i = 0; i < 3; ++i) EXPECT_FALSE(Read(text));
        EXPECT_EQ(reports.CountAbout("w.csv"), 1) << bad;
        EXPECT_TRUE(Read({
            {7, std::to_string(bad.size())}
        }));
        reports.Clear();
    }
    files.DeleteFile("w.csv");
    for (int i = 0; i < 4; ++i) EXPECT_FALSE(weather.GetCSVData());
    EXPECT_EQ(reports.CountAbout("w.csv cannot be read: refused"), 1);
}

TEST_F(VWSTest, SurvivesAnyBytes) {
    testing::CaughtReports reports;
    std::mt19937 random(11);
    const std::string alphabet = ",,,,,,0123456789.-+eE \r\n\"#&\0\xFF\xC3\xA9x";
    int taken = 0;
    for (int i = 0; i < 20000; ++i) {
        std::string text = RecordText({
            {7, std::to_string(i % 60)}
        });
        if (i % 8 == 0) {
            text.assign(random() % 1100, '\0');
            for (char& c : text) c = static_cast<char>(random());
        }
        for (std::size_t n = random() % 4; n > 0 && !text.empty(); --n) {
            const char c = alphabet[random() % alphabet.size()];
            const std::size_t at = random() % text.size();
            if (random() % 2 == 0)
                text[at] = c;
            else
                text.insert(at, random() % 5 == 0 ? 200 : 1, c);
        }
        taken += Read(text) ? 1 : 0;
        for (int k = 0; k < VWS::Values; ++k) ASSERT_TRUE(std::isfinite(At(k))) << text;
    }
    EXPECT_GT(taken, 1000);
    EXPECT_LT(taken, 19000);
}

TEST_F(VWSTest, KeepsItsReadingsWhileTheFileCannotBeRead) {
    EXPECT_TRUE(Read({
        {14, "21.50"}
    }));
    files.DeleteFile("w.csv");
    EXPECT_FALSE(weather.GetCSVData());
    EXPECT_FALSE(weather.CSVDataValid());
    EXPECT_EQ(At(14), 21.5);
    EXPECT_EQ(weather.CSVDataS(14), "21.50");
    EXPECT_EQ(weather.CSVDataS(50), "-1000");
}

TEST_F(VWSTest, DerivesExtremesAndTrends) {
    Read({
        {14, "20"   },
        {9,  "5"    },
        {17, "1.5"  },
        {34, "1"    },
        {36, "-0.05"}
    });
    Read({
        {7,  "15"  },
        {14, "25"  },
        {9,  "3"   },
        {17, "2.5" },
        {34, "0.9" },
        {36, "0.05"}
    });
    Read({
        {7,  "30"   },
        {14, "15"   },
        {9,  "-1000"},
        {17, "2.5"  },
        {34, "-1"   },
        {36, "0.04" }
    });
    const std::map<int, double> today = {
        {VWS::MaxTempToday,     25   },
        {VWS::MinTempToday,     15   },
        {VWS::MaxGustToday,     5    },
        {VWS::TemperatureTrend, -1   },
        {VWS::BarometerTrend,   0    },
        {VWS::RainAtDayChange,  2.5  },
        {VWS::MaxTempYesterday, -1000}
    };
    for (const auto& [k, value] : today) EXPECT_EQ(At(k), value) << k;

    Read({
        {4,  "10"  },
        {5,  "0"   },
        {14, "12"  },
        {9,  "2"   },
        {17, "0"   },
        {36, "0.05"}
    });
    const std::map<int, double> nextDay = {
        {VWS::MaxTempYesterday, 25 },
        {VWS::MinTempYesterday, 15 },
        {VWS::MaxTempToday,     12 },
        {VWS::MinTempToday,     12 },
        {VWS::MaxGustYesterday, 5  },
        {VWS::MaxGustToday,     2  },
        {VWS::RainYesterday,    2.5},
        {VWS::RainAtDayChange,  0  },
        {VWS::BarometerTrend,   1  }
    };
    for (const auto& [k, value] : nextDay) EXPECT_EQ(At(k), value) << k;
}

TEST_F(VWSTest, ReducesThePressureToSeaLevel) {
    weather.SetCSVBarometerOffset(1.5);
    Read({
        {14, "15"  },
        {15, "1000"}
    });
    EXPECT_DOUBLE_EQ(At(VWS::Barometer), 1001.5);
    EXPECT_DOUBLE_EQ(At(VWS::SeaLevelBarometer), 1001.5);

    weather.SetCSVBarometerOffset(0);
    weather.SetCSVAltitude(500);
    Read({
        {7,  "1"    },
        {14, "15"   },
        {15, "954.6"}
    });
    EXPECT_NEAR(At(VWS::SeaLevelBarometer), 1013, 1);  // the standard atmosphere, a little warm for 500 m
    const double metric = At(VWS::SeaLevelBarometer);

    weather.SetCSVAltitude(500 / 0.3048);
    weather.SetCSVAltitudeUnits(1);
    weather.SetCSVTemperatureUnits(1);
    Read({
        {7,  "2"    },
        {14, "59"   },
        {15, "954.6"}
    });
    EXPECT_NEAR(At(VWS::SeaLevelBarometer), metric, 1e-6);
    Read({
        {7,  "3"    },
        {14, "-1000"},
        {15, "954.6"}
    });
    EXPECT_EQ(At(VWS::SeaLevelBarometer), -1000);
    weather.SetCSVAltitude(0);
    Read({
        {7,  "4"      },
        {14, "-459.67"},
        {15, "954.6"  }
    });
    EXPECT_EQ(At(VWS::SeaLevelBarometer), 954.6);
    weather.SetCSVAltitude(40000);
    Read({
        {7,  "5"    },
        {14, "-530" },
        {15, "954.6"}
    });
    EXPECT_TRUE(std::isfinite(At(VWS::SeaLevelBarometer)));
}

TEST_F(VWSTest, WeighsTheWindByTime) {
    Read({
        {8,  "7"  },
        {9,  "9"  },
        {10, "270"}
    });
    EXPECT_EQ(At(VWS::StatWind), 7);
    EXPECT_EQ(At(VWS::StatDirection), 270);
    EXPECT_EQ(At(VWS::StatGust), 9);

    // 30 s of west wind at 7, then 10 s of east wind at 7: half of it is left.
    Read({
        {7,  "30"},
        {8,  "7" },
        {9,  "8" },
        {10, "90"}
    });
    Read({
        {7,  "40"},
        {8,  "0" },
        {9,  "2" },
        {10, "0" }
    });
    EXPECT_NEAR(At(VWS::StatWind), 3.5, 1e-6);
    EXPECT_NEAR(At(VWS::StatDirection), 270, 1e-6);
    EXPECT_EQ(At(VWS::StatGust), 9);

    // A minute later only the calm is left in the window; its direction is the one before.
    Read({
        {6,  "1"  },
        {7,  "40" },
        {8,  "0"  },
        {9,  "1"  },
        {10, "180"}
    });
    EXPECT_EQ(At(VWS::StatWind), 0);
    EXPECT_NEAR(At(VWS::StatDirection), 270, 1e-6);
    EXPECT_EQ(At(VWS::StatGust), 2);
}

/// The same statistics by another way: forwards, with complex numbers, over records that are kept apart.
struct WindStatistics {
    double speed, direction, gust;

    WindStatistics(const std::vector<std::array<double, 4>>& records, double window) {
        std::complex<long double> sum;
        long double duration = 0;
        gust = records.back()[3];
        for (std::size_t i = 0; i + 1 < records.size(); ++i) {
            const auto& [second, wind, degrees, gusts] = records[i];
            if (records.back()[0] - second > window) continue;
            const long double span = records[i + 1][0] - second;
            sum += std::polar<long double>(wind, degrees * std::numbers::pi_v<long double> / 180) * span;
            duration += span;
            gust = std::max(gust, gusts);
        }
        speed = static_cast<double>(std::abs(sum) / duration);
        direction = static_cast<double>(std::arg(sum) * 180 / std::numbers::pi_v<long double>);
        if (direction < 0) direction += 360;
    }
};

TEST_F(VWSTest, WindStatisticsAgreeWithAnotherCalculation) {
    std::mt19937 random(3);
    weather.SetCSVWindStatisticsInterval(600);
    std::vector<std::array<double, 4>> records;
    int second = 0;
    for (int i = 0; i < 300; ++i) {
        second += 1 + static_cast<int>(random() % 40);
        const double wind = static_cast<double>(random() % 300) / 10,
                     gust = wind + static_cast<double>(random() % 50) / 10;
        const double degrees = static_cast<double>(random() % 3600) / 10;
        records.push_back({static_cast<double>(second), wind, degrees, gust});
        ASSERT_TRUE(Read({
            {5,  std::to_string(second / 3600)   },
            {6,  std::to_string(second / 60 % 60)},
            {7,  std::to_string(second % 60)     },
            {8,  modNumbers::CStrNI(wind)        },
            {9,  modNumbers::CStrNI(gust)        },
            {10, modNumbers::CStrNI(degrees)     }
        }));
        if (i == 0) continue;
        const WindStatistics expected(records, 600);
        ASSERT_NEAR(At(VWS::StatWind), expected.speed, 1e-4) << i;
        ASSERT_NEAR(std::remainder(At(VWS::StatDirection) - expected.direction, 360), 0, 1e-2) << i;
        ASSERT_NEAR(At(VWS::StatGust), expected.gust, 1e-9) << i;
    }
}

TEST_F(VWSTest, WindStatisticsAtTheEdges) {
    struct Wind {
        const char *minute, *second, *speed, *gust, *direction;
    };
    // clang-format off
    struct {
        const char* what;
        std::vector<Wind> records;
        double speed, direction, gust;
    } const rows[] = {
        {"north wind",      {{"0", "0", "4", "5", "0"},   {"0", "10", "9", "6", "90"}},    4, 0,   6},
        {"south wind",      {{"0", "0", "4", "5", "180"}, {"0", "10", "9", "6", "90"}},    4, 180, 6},
        {"opposite winds",  {{"0", "0", "4", "5", "90"},  {"0", "10", "4", "5", "270"}, {"0", "20", "1", "1", "3"}}, 0, 90, 5},
        {"no speed known",  {{"0", "0", "", "5", "90"},   {"0", "10", "2", "", "45"}},     2, 45,  -1000},
        {"no gust known",   {{"0", "0", "4", "", "90"},   {"0", "10", "2", "", "45"}},     4, 90,  -1000},
        {"window's edge",   {{"0", "0", "4", "5", "90"},  {"1", "0", "2", "1", "45"}},     4, 90,  5},
        {"past the window", {{"0", "0", "4", "5", "90"},  {"1", "1", "2", "1", "45"}},     2, 45,  1},
        {"time set back",   {{"9", "0", "8", "9", "90"},  {"9", "9", "8", "9", "90"}, {"0", "9", "2", "1", "45"}}, 2, 45, 1},
        {"after that",      {{"9", "0", "8", "9", "90"},  {"0", "9", "2", "1", "45"}, {"0", "19", "3", "2", "0"}}, 2, 45, 2},
    };
    // clang-format on
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        VWS input(owner, time, files);
        input.SetCSVFile("w.csv");
        for (const Wind& wind : row.records) {
            files["w.csv"].bytes = RecordText({
                {6,  wind.minute   },
                {7,  wind.second   },
                {8,  wind.speed    },
                {9,  wind.gust     },
                {10, wind.direction}
            });
            ASSERT_TRUE(input.GetCSVData());
        }
        EXPECT_NEAR(input.CSVData(VWS::StatWind), row.speed, 1e-6);
        EXPECT_NEAR(input.CSVData(VWS::StatDirection), row.direction, 1e-6);
        EXPECT_EQ(input.CSVData(VWS::StatGust), row.gust);
    }
}

TEST_F(VWSTest, AFullRingMovesBothEnds) {
    const int size = weather.CSVDatabaseBufferSize();
    for (int i = 0; i < size + 5; ++i)
        ASSERT_TRUE(Read({
            {5, std::to_string(i / 3600)   },
            {6, std::to_string(i / 60 % 60)},
            {7, std::to_string(i % 60)     },
            {8, std::to_string(i)          }
        }));
    EXPECT_EQ(weather.CSVDatabaseHeadPtr(), 5);
    EXPECT_EQ(weather.CSVDatabaseTailPtr(), 6);
    EXPECT_EQ(weather.CSVDatabase(4, 8), size + 4);
    EXPECT_EQ(weather.CSVDatabase(6, 8), 6);
    EXPECT_EQ(weather.CSVDatabase(5, 8), -1000);  // the free place between head and tail
    EXPECT_EQ(weather.CSVDatabase(-1, 8), -1000);
}

TEST_F(VWSTest, DailyValuesSurviveARestart) {
    Read({
        {14, "20"},
        {9,  "5" }
    });
    Read({
        {7,  "15"},
        {14, "11"},
        {9,  "4" }
    });
    VWS again(owner, time, files);
    again.SetCSVFile("w.csv");
    files["w.csv"].bytes = RecordText({
        {7,  "30"},
        {14, "15"},
        {9,  "1" }
    });
    EXPECT_TRUE(again.GetCSVData());
    EXPECT_EQ(again.CSVData(VWS::MaxTempToday), 20);
    EXPECT_EQ(again.CSVData(VWS::MinTempToday), 11);
    EXPECT_EQ(again.CSVData(VWS::MaxGustToday), 5);
}

TEST_F(VWSTest, DailyValuesAreReadBackBeforeTheFirstRecord) {
    Read({
        {14, "20"}
    });
    VWS again(owner, time, files);
    EXPECT_FALSE(again.GetCSVData());  // no file yet
    EXPECT_EQ(again.CSVData(VWS::MaxTempToday), 20);
    again.SetCSVFile("w.csv");
    files["w.csv"].bytes = RecordText({
        {4,  "10"},
        {14, "7" }
    });
    EXPECT_TRUE(again.GetCSVData());
    EXPECT_EQ(again.CSVData(VWS::MaxTempYesterday), 20);
    EXPECT_EQ(again.CSVData(VWS::MaxTempToday), 7);
}

TEST_F(VWSTest, KeepsDailyValuesWhateverFails) {
    testing::FaultyFileSystem faulty(files);
    VWS input(owner, time, faulty);
    input.SetCSVFile("w.csv");
    const auto read = [&](const char* second, const char* temperature) {
        files["w.csv"].bytes = RecordText({
            {7,  second     },
            {14, temperature}
        });
        return input.GetCSVData();
    };
    EXPECT_TRUE(read("1", "20"));
    const std::string before = files[VWS::LastDataFile].bytes;

    testing::CaughtReports reports;
    faulty.FailAt(2);  // the reading itself is the first operation
    EXPECT_TRUE(read("2", "25"));
    EXPECT_EQ(input.CSVData(VWS::MaxTempToday), 25);
    EXPECT_EQ(files[VWS::LastDataFile].bytes, before);  // still whole
    EXPECT_EQ(reports.CountAbout("lastdata.csv: No space left on device"), 1);
    EXPECT_TRUE(read("3", "21"));  // changes nothing, but what was not written is tried again
    VWS again(owner, time, files);
    again.LoadLastData();
    EXPECT_EQ(again.CSVData(VWS::MaxTempToday), 25);

    const int changes = files.Changes();
    faulty.FailNever();
    files["w.csv"].bytes = RecordText({
        {7,  "4" },
        {14, "22"}
    });
    EXPECT_TRUE(input.GetCSVData());
    EXPECT_EQ(files.Changes(), changes + 1);  // the record alone: nothing to keep

    for (const char* damaged : {"", "nonsense", "46000,1,2", "46000,1,2,3,4,5,6,7,x", ",,,,,,,,"}) {
        files[VWS::LastDataFile].bytes = damaged;
        VWS fresh(owner, time, files);
        fresh.LoadLastData();
        EXPECT_EQ(fresh.CSVData(VWS::MaxTempToday), -1000) << damaged;
    }
}

}  // namespace
}  // namespace tessaloom
