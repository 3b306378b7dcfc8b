#include "text/VWS.h"

#include "core/modNumbers.h"
#include "locale/DateParts.h"
#include "support/CaughtReports.h"
#include "support/FakeTime.h"
#include "support/FaultyFileSystem.h"
#include "support/MemoryFileSystem.h"
#include "support/PropertyTable.h"

#include <complex>
#include <numbers>
#include <ranges>

namespace tessaloom::testing {
namespace {

/// A record's text: all fields are 0 but those of the time, 2026-07-09 12:00:00, and `changes`, for example
/// "7=15;14=21.5". `last` is the number of its last field, counting the empty one at the end.
std::string Record(std::string_view changes = {}, const char* version = "1.01", std::size_t last = 41) {
    std::vector<std::string> fields(last, "0");
    fields[1] = version;
    for (const std::string_view list : {std::string_view("2=2026;3=7;4=9;5=12"), changes})
        for (const auto part : std::views::split(list, ';')) {
            const std::string change(part.begin(), part.end());
            const std::size_t equals = change.find('=');
            if (equals != change.npos) fields.at(std::stoul(change)) = change.substr(equals + 1);
        }
    std::string text;
    for (const std::string& field : fields) text.append(text.empty() ? "" : ",").append(field);
    return text;
}

/// A record of this second of the day.
std::string RecordAt(int second, const std::string& changes = {}) {
    return Record("5=" + std::to_string(second / 3600) + ";6=" + std::to_string(second / 60 % 60) +
                  ";7=" + std::to_string(second % 60) + ";" + changes);
}

class VWSTest : public ::testing::Test {
protected:
    bool Read(VWS& input, const std::string& text) {
        input.SetCSVFile("w.csv");
        files["w.csv"].bytes = text;
        return input.GetCSVData();
    }
    bool Read(const std::string& text) { return Read(weather, text); }
    double At(int k) const { return weather.CSVData(k); }

    FakeTime time{1.0 * DayNumber(2026, 7, 9)};
    CountingOwner owner;
    MemoryFileSystem files;
    VWS weather{owner, time, files};
};

TEST_F(VWSTest, ClampsAndTellsEveryNumber) {
    using V = VWS;
    // clang-format off
    const Property<V> rows[] = {
        Number<V, &V::CSVDelay, &V::SetCSVDelay>("Delay", 0, 0, 86400),
        Number<V, &V::CSVBaseTime, &V::SetCSVBaseTime>("BaseTime", 0, 0, 86400),
        Number<V, &V::CSVWindStatisticsInterval, &V::SetCSVWindStatisticsInterval>("Wind", 60, 0, 86400),
        Number<V, &V::CSVBarometricTrendThreshold, &V::SetCSVBarometricTrendThreshold>("Rise", 0.05, 0, 1000),
        Number<V, &V::CSVTemperatureTrendThreshold, &V::SetCSVTemperatureTrendThreshold>("Warm", 1, 0, 1000),
        Number<V, &V::CSVBarometerOffset, &V::SetCSVBarometerOffset>("Offset", 0, -1000, 1000),
        Number<V, &V::CSVAltitude, &V::SetCSVAltitude>("Altitude", 0, -2000, 40000),
        Number<V, &V::CSVAltitudeUnits, &V::SetCSVAltitudeUnits>("AltitudeUnits", 0, 0, 1),
        Number<V, &V::CSVTemperatureUnits, &V::SetCSVTemperatureUnits>("TemperatureUnits", 0, 0, 1),
    };
    // clang-format on
    CheckProperties<V>(weather, owner, rows);
}

TEST_F(VWSTest, EnablingMakesItDueAtOnce) {
    weather.SetCSVDelay(15);
    weather.SetNextTime();
    weather.SetCSVEnabled(true);
    EXPECT_TRUE(weather.Due());
    weather.SetNextTime();
    EXPECT_FALSE(weather.Due());
    weather.ForceUpdate();
    weather.SetCSVEnabled(false);
    EXPECT_FALSE(weather.Due());
}

TEST_F(VWSTest, TakesOnlyWellFormedNewRecords) {
    // A text of this many characters altogether; field 0 makes it as long.
    const auto ofLength = [](const std::string& second, std::size_t characters, const char* filler = "1") {
        std::string padding;
        for (std::size_t i = Record(second).size(); i < characters; ++i) padding += filler;
        return Record(second + ";0=" + padding + "0");
    };
    // clang-format off
    const std::string refused[] = {
        Record("", "1", 41), Record("", "1", 38), Record("", "1", 40), Record("", "1.01", 40),  // fields
        Record("", "1.01", 42), std::string(41, ','), std::string("\0\xFF,1.01,\n", 9),
        Record("", "2"), Record("", ""), Record("", "x"),                                       // versions
        ofLength("7=1", 1001), ofLength("7=1", 1000) + "\n",
        Record("3=2;4=30"), Record("3=2;4=29"), Record("3=13;4=5"), Record("2=;3=;4="),         // no dates
        Record("5=24"), Record("3=12;4=30;5=x"), Record("7="),                                  // no times
    };
    const std::string taken[] = {
        Record("", "1", 39), Record("7=15"), Record("7=30", "1.01", 40) + ",", Record("7=45") + "\r\n",
        ofLength("7=46", 1000), ofLength("7=48", 1000, "\u00B0"), ofLength("7=49", 1000, "\xB0"),
        Record("2=2028;3=2;4=29"), Record("7=52"),
    };
    // clang-format on
    for (const std::string& text : refused) {
        EXPECT_FALSE(Read(text)) << text;
        EXPECT_TRUE(weather.CSVDataValid());
    }
    for (const std::string& text : taken) {
        EXPECT_TRUE(Read(text)) << text;
        EXPECT_FALSE(Read(text)) << text << " has been taken";
    }
    EXPECT_NEAR(weather.CSVLastTime(), DayNumber(2026, 7, 9) + (12 * 3600 + 52) / 86400.0, 1e-9);
}

TEST_F(VWSTest, ReadsFieldsAsTheyStand) {
    // clang-format off
    const struct {
        std::string text;
        double value;
        std::string kept;
        int reports;
    } rows[] = {
        {"21.50", 21.5, "21.50", 0}, {" 7 ", 7, " 7 ", 0}, {"-1000", -1000, "-1000", 0},
        {"", -1000, "-1000", 0}, {"  ", -1000, "-1000", 0}, {"1e300", 1e300, "1e300", 0},
        {"1e400", 0, "1e400", 1}, {"x", 0, "x", 1}, {"NaN", 0, "NaN", 1},
        {"inf", 0, "inf", 1}, {"\xB0", 0, "\u00B0", 1},
    };
    // clang-format on
    for (int second = 0; const auto& row : rows) {
        SCOPED_TRACE(row.text);
        CaughtReports reports;
        ASSERT_TRUE(Read(RecordAt(second++, "14=" + row.text)));
        EXPECT_EQ(At(VWS::OutdoorTemperature), row.value);
        EXPECT_EQ(weather.CSVDataS(VWS::OutdoorTemperature), row.kept);
        EXPECT_EQ(reports.Count(), row.reports);
    }
    for (const int none : {-1, 41, 99, 120}) {  // 41: the element behind the appended comma
        EXPECT_EQ(At(none), -1000);
        EXPECT_EQ(weather.CSVDataS(none), "-1000");
    }
}

/// A file that is written to while it is read, or was a moment ago.
class BusyFiles final : public FaultyFileSystem {
public:
    using FaultyFileSystem::FaultyFileSystem;

    std::optional<FileStamp> Stamp(std::string_view path) const override {
        auto stamp = FaultyFileSystem::Stamp(path);
        if (stamp) stamp->settled = settled;
        return stamp;
    }
    std::optional<std::string> ReadFile(std::string_view path, std::size_t limit) override {
        auto text = FaultyFileSystem::ReadFile(path, limit);
        if (path == "w.csv" && meanwhile) std::exchange(meanwhile, nullptr)();
        return text;
    }

    bool settled = true;
    std::function<void()> meanwhile;  ///< Happens once.
};

TEST_F(VWSTest, TriesAHalfWrittenFileAgain) {
    BusyFiles busy(files);
    VWS input(owner, time, busy);
    CaughtReports reports;
    busy.meanwhile = [&] { files["w.csv"].bytes += "5"; };
    EXPECT_FALSE(Read(input, RecordAt(1)));
    EXPECT_TRUE(input.CSVDataValid());
    EXPECT_TRUE(input.GetCSVData());
    EXPECT_EQ(input.CSVData(40), 5);  // with what was still missing then

    busy.settled = false;
    EXPECT_FALSE(Read(input, RecordAt(2)));  // its last field may be cut short
    EXPECT_TRUE(input.GetCSVData());         // a station that keeps our time is not put off for ever
    EXPECT_TRUE(Read(input, RecordAt(3) + "\r\n"));

    busy.settled = true;
    busy.meanwhile = [&] { files.DeleteFile("w.csv"); };
    EXPECT_FALSE(Read(input, RecordAt(4) + "\n"));
    EXPECT_EQ(input.CSVData(7), 3);
    EXPECT_EQ(reports.Count(), 0);
}

TEST_F(VWSTest, ReportsAFileThatStaysBadOnceAndKeepsItsReadings) {
    CaughtReports reports;
    for (int second = 0; const std::string& bad : {std::string("cut short"), std::string(), Record("3=14")}) {
        EXPECT_FALSE(Read(bad));
        EXPECT_EQ(reports.CountAbout("w.csv"), 0) << bad;
        for (int i = 0; i < 3; ++i) EXPECT_FALSE(Read(bad));
        EXPECT_EQ(reports.CountAbout("w.csv"), 1) << bad;
        EXPECT_TRUE(Read(RecordAt(++second, "14=21.50")));
        reports.Clear();
    }
    files.DeleteFile("w.csv");
    for (int i = 0; i < 4; ++i) EXPECT_FALSE(weather.GetCSVData());
    EXPECT_EQ(reports.CountAbout("w.csv cannot be read: refused"), 1);
    EXPECT_FALSE(weather.CSVDataValid());
    EXPECT_EQ(At(14), 21.5);
    EXPECT_EQ(weather.CSVDataS(14), "21.50");
}

TEST_F(VWSTest, SurvivesAnyBytes) {
    CaughtReports reports;
    std::mt19937 random(11);
    const std::string alphabet = ",,,,,,0123456789.-+eE \r\n\"#&\0\xFF\xC3\xA9x";
    int taken = 0;
    for (int i = 0; i < 20000; ++i) {
        std::string text = Record("7=" + std::to_string(i % 60));
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

TEST_F(VWSTest, DerivesExtremesAndTrends) {
    using V = VWS;
    // clang-format off
    const struct {
        const char* record;
        std::vector<std::pair<int, double>> derived;
    } rows[] = {
        {"14=20;9=5;17=1.5;34=1;36=-0.05",
         {{V::MaxTempToday, 20}, {V::TemperatureTrend, 1}, {V::BarometerTrend, -1}}},
        {"7=15;14=25;9=3;17=2.5;34=0.9;36=0.05", {{V::TemperatureTrend, 0}, {V::BarometerTrend, 1}}},
        {"7=30;14=15;9=-1000;17=2.5;34=-1;36=0.04",
         {{V::MaxTempToday, 25}, {V::MinTempToday, 15}, {V::MaxGustToday, 5}, {V::TemperatureTrend, -1},
          {V::BarometerTrend, 0}, {V::RainAtDayChange, 2.5}, {V::MaxTempYesterday, -1000}}},
        {"4=10;5=0;14=12;9=2;17=0;36=0.05",
         {{V::MaxTempYesterday, 25}, {V::MinTempYesterday, 15}, {V::MaxTempToday, 12}, {V::MinTempToday, 12},
          {V::MaxGustYesterday, 5}, {V::MaxGustToday, 2}, {V::RainYesterday, 2.5}, {V::RainAtDayChange, 0},
          {V::BarometerTrend, 1}}},
    };
    // clang-format on
    for (const auto& row : rows) {
        EXPECT_TRUE(Read(Record(row.record)));
        for (const auto& [k, value] : row.derived) EXPECT_EQ(At(k), value) << row.record << ": " << k;
    }
}

TEST_F(VWSTest, ReducesThePressureToSeaLevel) {
    const double feet = 500 / 0.3048;
    // clang-format off
    const struct {
        double offset, altitude;
        int altitudeUnits, temperatureUnits;
        const char* readings;
        double seaLevel;
    } rows[] = {
        {1.5, 0,     0, 0, "14=15;15=1000",       1001.5},
        {0,   500,   0, 0, "14=15;15=954.6",      1012.594099257697},  // standard atmosphere: 1013.25
        {0,   feet,  1, 1, "14=59;15=954.6",      1012.594099257697},
        {0,   feet,  1, 1, "14=-1000;15=954.6",   -1000},
        {0,   0,     1, 1, "14=-459.67;15=954.6", 954.6},
        {0,   40000, 1, 1, "14=-530.05;15=954.6", -1000},  // below absolute zero, out of all bounds
    };
    // clang-format on
    for (int second = 0; const auto& row : rows) {
        weather.SetCSVBarometerOffset(row.offset);
        weather.SetCSVAltitude(row.altitude);
        weather.SetCSVAltitudeUnits(row.altitudeUnits);
        weather.SetCSVTemperatureUnits(row.temperatureUnits);
        EXPECT_TRUE(Read(RecordAt(++second, row.readings)));
        EXPECT_NEAR(At(VWS::SeaLevelBarometer), row.seaLevel, 1e-9) << row.readings;
        EXPECT_EQ(At(VWS::Barometer), row.offset == 0 ? 954.6 : 1001.5);
    }
}

/// Speed, direction and gust by another way: forwards, with complex numbers, over records that are kept
/// apart.
std::array<double, 3> WindStatistics(const std::vector<std::array<double, 4>>& records, double window) {
    std::complex<double> sum;
    double duration = 0, gust = records.back()[3];
    for (std::size_t i = 0; i + 1 < records.size(); ++i) {
        const auto& [second, wind, degrees, gusts] = records[i];
        if (records.back()[0] - second > window) continue;
        const double span = records[i + 1][0] - second;
        sum += std::polar(wind, degrees * std::numbers::pi / 180) * span;
        duration += span;
        gust = std::max(gust, gusts);
    }
    return {std::abs(sum) / duration, std::arg(sum) * 180 / std::numbers::pi, gust};
}

TEST_F(VWSTest, WindStatisticsAgreeWithAnotherCalculation) {
    std::mt19937 random(3);
    weather.SetCSVWindStatisticsInterval(600);
    std::vector<std::array<double, 4>> records;
    int second = 0;
    for (int i = 0; i < 300; ++i) {
        const auto tenths = [&](unsigned end) { return static_cast<double>(random() % end) / 10; };
        second += 1 + static_cast<int>(random() % 40);
        const double wind = tenths(300), gust = wind + tenths(50), degrees = tenths(3600);
        records.push_back({static_cast<double>(second), wind, degrees, gust});
        using modNumbers::CStrNI;
        const std::string fields = "8=" + CStrNI(wind) + ";9=" + CStrNI(gust) + ";10=" + CStrNI(degrees);
        ASSERT_TRUE(Read(RecordAt(second, fields)));
        if (i == 0) continue;
        const auto& [speed, direction, gusts] = WindStatistics(records, 600);
        ASSERT_NEAR(At(VWS::StatWind), speed, 1e-4) << i;
        ASSERT_NEAR(std::remainder(At(VWS::StatDirection) - direction, 360), 0, 1e-2) << i;
        ASSERT_NEAR(At(VWS::StatGust), gusts, 1e-9) << i;
    }
}

TEST_F(VWSTest, WindStatisticsAtTheEdges) {
    struct Wind {
        int second;
        const char* fields;  ///< Speed, gust, direction.
    };
    // clang-format off
    const struct {
        const char* what;
        std::vector<Wind> records;
        double speed, direction, gust;
    } rows[] = {
        {"the first",       {{0, "8=7;9=9;10=270"}}, 7, 270, 9},
        {"half is left",    {{0, "8=7;9=9;10=270"}, {30, "8=7;9=8;10=90"}, {40, "9=2"}}, 3.5, 270, 9},
        {"a calm keeps it", {{0, "8=7;9=9;10=270"}, {40, "9=2"}, {100, "9=1;10=180"}}, 0, 270, 2},
        {"north wind",      {{0, "8=4;9=5;10=0"}, {10, "8=9;9=6;10=90"}}, 4, 0, 6},
        {"south wind",      {{0, "8=4;9=5;10=180"}, {10, "8=9;9=6;10=90"}}, 4, 180, 6},
        {"opposite winds",  {{0, "8=4;9=5;10=90"}, {10, "8=4;9=5;10=270"}, {20, "8=1;9=1;10=3"}}, 0, 90, 5},
        {"no speed known",  {{0, "8=;9=5;10=90"}, {10, "8=2;9=;10=45"}}, 2, 45, -1000},
        {"no gust known",   {{0, "8=4;9=;10=90"}, {10, "8=2;9=;10=45"}}, 4, 90, -1000},
        {"window's edge",   {{0, "8=4;9=5;10=90"}, {60, "8=2;9=1;10=45"}}, 4, 90, 5},
        {"past the window", {{0, "8=4;9=5;10=90"}, {61, "8=2;9=1;10=45"}}, 2, 45, 1},
        {"time set back",   {{540, "8=8;9=9;10=90"}, {549, "8=8;9=9;10=90"}, {9, "8=2;9=1;10=45"}}, 2, 45, 1},
        {"after that",      {{540, "8=8;9=9;10=90"}, {9, "8=2;9=1;10=45"}, {19, "8=3;9=2;10=0"}}, 2, 45, 2},
    };
    // clang-format on
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        VWS input(owner, time, files);
        for (const Wind& wind : row.records)
            ASSERT_TRUE(Read(input, RecordAt(12 * 3600 + wind.second, wind.fields)));
        EXPECT_NEAR(input.CSVData(VWS::StatWind), row.speed, 1e-6);
        EXPECT_NEAR(input.CSVData(VWS::StatDirection), row.direction, 1e-6);
        EXPECT_EQ(input.CSVData(VWS::StatGust), row.gust);
    }
}

TEST_F(VWSTest, AFullRingMovesBothEnds) {
    const int size = weather.CSVDatabaseBufferSize();
    for (int i = 0; i < size + 5; ++i) ASSERT_TRUE(Read(RecordAt(i, "8=" + std::to_string(i))));
    EXPECT_EQ(weather.CSVDatabaseHeadPtr(), 5);
    EXPECT_EQ(weather.CSVDatabaseTailPtr(), 6);
    EXPECT_EQ(weather.CSVDatabase(4, 8), size + 4);
    EXPECT_EQ(weather.CSVDatabase(6, 8), 6);
    EXPECT_EQ(weather.CSVDatabase(5, 8), -1000);  // the free place between head and tail
}

TEST_F(VWSTest, DailyValuesSurviveARestart) {
    Read(RecordAt(1, "14=20;9=5"));
    Read(RecordAt(2, "14=11;9=4"));
    VWS sameDay(owner, time, files), nextDay(owner, time, files);
    EXPECT_FALSE(nextDay.GetCSVData());  // no file yet
    EXPECT_EQ(nextDay.CSVData(VWS::MaxTempToday), 20);
    EXPECT_TRUE(Read(sameDay, RecordAt(3, "14=15;9=1")));
    EXPECT_EQ(sameDay.CSVData(VWS::MaxTempToday), 20);
    EXPECT_EQ(sameDay.CSVData(VWS::MinTempToday), 11);
    EXPECT_EQ(sameDay.CSVData(VWS::MaxGustToday), 5);
    EXPECT_TRUE(Read(nextDay, Record("4=10;14=7")));
    EXPECT_EQ(nextDay.CSVData(VWS::MaxTempYesterday), 20);
    EXPECT_EQ(nextDay.CSVData(VWS::MaxTempToday), 7);
}

TEST_F(VWSTest, KeepsDailyValuesWhateverFails) {
    FaultyFileSystem faulty(files);
    VWS input(owner, time, faulty);
    EXPECT_TRUE(Read(input, RecordAt(1, "14=20")));
    const std::string before = files[VWS::LastDataFile].bytes;

    CaughtReports reports;
    faulty.FailAt(2);  // the reading itself is the first operation
    EXPECT_TRUE(Read(input, RecordAt(2, "14=25")));
    EXPECT_EQ(input.CSVData(VWS::MaxTempToday), 25);
    EXPECT_EQ(files[VWS::LastDataFile].bytes, before);  // still whole
    EXPECT_EQ(reports.CountAbout("lastdata.csv: No space left on device"), 1);
    EXPECT_TRUE(Read(input, RecordAt(3, "14=21")));  // changes nothing, but keeps what was not written
    const int changes = files.Changes();
    EXPECT_TRUE(Read(input, RecordAt(4, "14=22")));
    EXPECT_EQ(files.Changes(), changes + 1);  // the record alone: nothing to keep

    const auto kept = [&] {
        VWS fresh(owner, time, files);
        fresh.LoadLastData();
        return fresh.CSVData(VWS::MaxTempToday);
    };
    EXPECT_EQ(kept(), 25);
    for (const char* damaged : {"", "nonsense", "46000,1,2", "46000,1,2,3,4,5,6,7,x", ",,,,,,,,"}) {
        files[VWS::LastDataFile].bytes = damaged;
        EXPECT_EQ(kept(), -1000) << damaged;
    }
}

}  // namespace
}  // namespace tessaloom::testing
