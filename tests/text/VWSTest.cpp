#include "text/VWS.h"

#include "locale/DateParts.h"
#include "support/FakeTime.h"
#include "support/MemoryFileSystem.h"
#include "support/PropertyTable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>

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
    struct {
        const char* what;
        std::string text;
        bool taken;
    } const rows[] = {
        {"version 1 with the fields of 1.01",                    RecordText({},                                           "1",                   41),false},
        {"version 1",                                                      RecordText({},                                                                                                   "1",                                                      39),true},
        {"the same time again",                                                  RecordText({},                                                                                                         "1",                                                                                                          39),                                                                                            false},
        {"version 1.01",                                                   RecordText({{7, "15"}}),                                                                                                     true                },
        {"1.01 with too few fields",                                                  RecordText({{7, "30"}},     "1.01",39),false},
        {"a new line at the end",                                                   RecordText({{7, "45"}}) + "\r\n",                                                                                                     true                                                                                                                                         },
        {"another version",                                                  RecordText({{7, "46"}},     "2",41),false},
        {"no number",                                                   RecordText({{7, "46"}},                                                                                                     "x",                                                                                                                                                                                                                                                          41),                                                                                                                                                                                                            false},
        {"too long",                                                   RecordText({{7, "47"}, {20, std::string(1000, '1')}}),   false},
        {"empty","",false                                                                                                                                                                                                                                                          },
        {"commas",                                                 std::string(41,                                                                                                          ','),false},
        {"bytes",                                                 std::string("\0\xFF,1.01,\n",                                                                                                        9),                                                                                                                                                                                                                                                          false                                                                                                                                                                                                                                                                                                                                      },
    };
    for (const auto& row : rows) EXPECT_EQ(Read(row.text), row.taken) << row.what;
    EXPECT_TRUE(weather.CSVDataValid());
    EXPECT_NEAR(weather.CSVLastTime(), DayNumber(2026, 7, 9) + (12 * 3600 + 45) / 86400.0, 1e-9);
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

    for (const char* damaged : {"", "nonsense", "46000,1,2", "46000,1,2,3,4,5,6,7,x", ",,,,,,,,"}) {
        files[VWS::LastDataFile].bytes = damaged;
        VWS fresh(owner, time, files);
        fresh.LoadLastData();
        EXPECT_EQ(fresh.CSVData(VWS::MaxTempToday), -1000) << damaged;
    }
}

}  // namespace
}  // namespace tessaloom
