#include "core/SetupValues.h"

#include "core/ErrorReport.h"
#include "core/INI.h"
#include "core/Log.h"
#include "platform/profile/ProfileFiles.h"
#include "support/MemoryFileSystem.h"

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

TEST_F(SetupValuesTest, TellsOnceOfEachValueThatItCannotUse) {
    const struct {
        const char *setting, *told;
    } rows[] = {
        {"StationLatitude=north",    "not a number, 0 taken"              },
        {"StationLatitude=1e999",    "not a number, 0 taken"              },
        {"StartupTop=3x",            "not a number, 0 taken"              },
        {"StartupTop=-1e300",        "out of range, 0 taken"              },
        {"StartupTop=-2147483649",   "out of range, 0 taken"              },
        {"StartupTop=-2147483648.5", nullptr                              },
        {"ClearTypeOrientation=7",   "out of range, 1 taken"              },
        {"ClearTypeContrast=100",    "out of range, 1000 taken"           },
        {"AutoLoad=perhaps",         "neither True nor False, False taken"},
        {"AutoLoad=No",              nullptr                              },
        {"StartupWidth=9000000000",  nullptr                              },
    };
    std::vector<std::string> told;
    const ErrorReporter reporter =
        SetErrorReporter([&](const ErrorReport& report) { told.push_back(report.description); });
    const LogSink sink = SetLogSink([&](LogLevel, std::string_view line) { told.emplace_back(line); });
    for (const auto& row : rows) {
        files_["Tessaloom.INI"].bytes = std::string("[General]\n") + row.setting + "\n";
        told.clear();
        LoadSetup(ini_, 15, 15);
        std::vector<std::string> expected;
        if (row.told)
            expected.push_back(std::string("Tessaloom.INI [General] ") + row.setting + ": " + row.told);
        EXPECT_EQ(told, expected) << row.setting;
    }
    SetLogSink(sink);
    SetErrorReporter(reporter);
}

}  // namespace
}  // namespace tessaloom::testing
