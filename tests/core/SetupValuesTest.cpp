#include "core/SetupValues.h"

#include "core/ErrorReport.h"
#include "core/INI.h"
#include "core/Log.h"
#include "platform/profile/ProfileFiles.h"
#include "support/CaughtReports.h"
#include "support/MemoryFileSystem.h"
#include "support/Tsv.h"

namespace tessaloom::testing {
namespace {

constexpr std::string_view Defaults =
    "[General]\r\nAutoLoad=True\r\nLastPortfolio=\r\nStartupMode=2\r\nStartupWidth=12000\r\n"
    "StartupHeight=6000\r\nStartupTop=0\r\nStartupLeft=0\r\nStartupState=2\r\n"
    "StartupLastNonMinimizedState=2\r\nStationLongitude=0\r\nStationLatitude=0\r\n"
    "ClearTypeContrast=1400\r\nClearTypeOrientation=1\r\n";

class SetupValuesTest : public ::testing::Test {
protected:
    SetupValuesTest() { tessaloom::Setup() = {}; }
    ~SetupValuesTest() override { tessaloom::Setup() = {}; }

    std::string Bytes() { return files_.ReadFile("Tessaloom.INI").value_or("<missing>"); }

    MemoryFileSystem files_;
    ProfileFiles profile_{files_};
    INI ini_{profile_, "Tessaloom.INI"};
};

TEST_F(SetupValuesTest, CompletesAMissingFileInOneWrite) {
    LoadSetup(ini_, 15, 10);
    EXPECT_EQ(Bytes(), Defaults);
    EXPECT_EQ(files_.Changes(), 1);
    SaveSetup(ini_);
    EXPECT_EQ(Bytes(), Defaults);
}

TEST_F(SetupValuesTest, ReadsWhatTheUserWroteAndWritesItInItsOwnForm) {
    files_["Tessaloom.INI"].bytes =
        "[general]\nautoload=yes\nLastPortfolio=/srv/\"a\".por\nStartupMode=1.5\nStartupWidth=9000000000\n"
        "StartupHeight=-7\nStartupTop=300\nStartupLeft=200\nStartupState=0\nStationLongitude=-71.25\n"
        "StationLatitude=.5\nClearTypeContrast=5000\nClearTypeOrientation=-7\n";
    LoadSetup(ini_, 15, 15);
    const SetupValues& setup = tessaloom::Setup();
    EXPECT_EQ(setup.lastPortfolio, "/srv/\"a\".por");
    EXPECT_EQ((std::array{setup.startupMode, setup.startupWidth, setup.startupHeight, setup.startupTop,
                          setup.startupLeft, setup.clearTypeContrast, setup.clearTypeOrientation}),
              (std::array{2, 2000000000, -7, 300, 200, 2200, 0}));
    EXPECT_EQ((std::array{setup.stationLongitude, setup.stationLatitude}), (std::array{-71.25, 0.5}));
    EXPECT_TRUE(setup.autoLoad);
    SaveSetup(ini_);
    EXPECT_EQ(
        Bytes(),
        "[general]\nautoload=True\nLastPortfolio=/srv/&34a&34.por\nStartupMode=2\nStartupWidth=2000000000\n"
        "StartupHeight=-7\nStartupTop=300\nStartupLeft=200\nStartupState=0\nStationLongitude=-71.25\n"
        "StationLatitude=0.5\nClearTypeContrast=2200\nClearTypeOrientation=0\n"
        "StartupLastNonMinimizedState=2\r\n");
}

TEST_F(SetupValuesTest, KeepsWhateverIsReadWithinItsRange) {
    const struct {
        std::string_view text;
        int contrast, orientation;
    } cases[] = {
        {"plenty",        1000, 0},
        {"1500 or so",    1000, 0},
        {"1e999",         1000, 0},
        {"nan",           1000, 0},
        {"-",             1000, 0},
        {"0",             1000, 0},
        {"-1",            1000, 0},
        {"-1e300",        1000, 0},
        {"-9999999999",   1000, 0},
        {"1",             1000, 1},
        {"999.4",         1000, 1},
        {"1000.4",        1000, 1},
        {"2200",          2200, 1},
        {"2201",          2200, 1},
        {"2147483648",    2200, 1},
        {"1e300",         2200, 1},
        {"&34",           1000, 0},
        {"\xC3\xA4 1500", 1000, 0},
        {"\"1500\"",      1500, 1},
    };
    const auto line = [](std::string_view key, std::string_view value) {
        return std::string(key).append("=").append(value).append("\n");
    };
    CaughtReports reports;
    for (const auto& [text, contrast, orientation] : cases) {
        SCOPED_TRACE(text);
        files_["Tessaloom.INI"].bytes =
            "[General]\n" + line("ClearTypeContrast", text) + line("ClearTypeOrientation", text);
        LoadSetup(ini_, 15, 15);
        EXPECT_EQ(tessaloom::Setup().clearTypeContrast, contrast);
        EXPECT_EQ(tessaloom::Setup().clearTypeOrientation, orientation);
        SaveSetup(ini_);
        EXPECT_THAT(Bytes(), StartsWith("[General]\n" + line("ClearTypeContrast", std::to_string(contrast)) +
                                        line("ClearTypeOrientation", std::to_string(orientation))));
    }
}

TEST_F(SetupValuesTest, TellsOnceOfEachValueThatItCannotUse) {
    std::vector<std::string> told;
    const ErrorReporter reporter =
        SetErrorReporter([&](const ErrorReport& report) { told.push_back(report.description); });
    const LogSink sink = SetLogSink([&](LogLevel, std::string_view line) { told.emplace_back(line); });
    for (const TsvRow& row : ReadTsv(TEST_DATA "/vectors/doubtful_settings.tsv")) {
        files_["Tessaloom.INI"].bytes = "[General]\n" + row[0] + "\n";
        told.clear();
        LoadSetup(ini_, 15, 15);
        std::vector<std::string> expected;
        if (!row[1].empty()) expected.push_back("Tessaloom.INI [General] " + row[0] + ": " + row[1]);
        EXPECT_EQ(told, expected) << row[0];
    }
    SetLogSink(sink);
    SetErrorReporter(reporter);
}

}  // namespace
}  // namespace tessaloom::testing
