#include "core/SetupValues.h"

#include <gtest/gtest.h>

#include "core/INI.h"
#include "platform/profile/ProfileFiles.h"
#include "support/MemoryFileSystem.h"

namespace tessaloom {
namespace {

constexpr std::string_view Defaults =
    "[General]\r\nAutoLoad=True\r\nLastPortfolio=\r\nStartupMode=2\r\nStartupWidth=12000\r\nStartupHeight="
    "6000\r\n"
    "StartupTop=0\r\nStartupLeft=0\r\nStartupState=2\r\nStartupLastNonMinimizedState=2\r\nStationLongitude="
    "0\r\n"
    "StationLatitude=0\r\nClearTypeContrast=1400\r\nClearTypeOrientation=1\r\n";

class SetupValuesTest : public ::testing::Test {
protected:
    SetupValuesTest() { tessaloom::Setup() = {}; }
    ~SetupValuesTest() override { tessaloom::Setup() = {}; }

    std::string Bytes() { return files_.ReadFile("Tessaloom.INI").value_or("<missing>"); }

    testing::MemoryFileSystem files_;
    ProfileFiles profile_{files_};
    INI ini_{profile_, "Tessaloom.INI"};
};

TEST_F(SetupValuesTest, CompletesAMissingFileInOneWrite) {
    LoadSetup(ini_, 15, 10);
    EXPECT_EQ(Bytes(), Defaults);
    EXPECT_EQ(files_.Changes(), 1);
    EXPECT_TRUE(tessaloom::Setup().autoLoad);
    EXPECT_EQ(tessaloom::Setup().startupWidth, 12000);
    EXPECT_EQ(tessaloom::Setup().startupHeight, 6000);
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
    EXPECT_TRUE(setup.autoLoad);
    EXPECT_EQ(setup.lastPortfolio, "/srv/\"a\".por");
    EXPECT_EQ(setup.startupMode, 2);
    EXPECT_EQ(setup.startupWidth, 2000000000);
    EXPECT_EQ(setup.startupHeight, -7);
    EXPECT_EQ(setup.startupTop * 1000 + setup.startupLeft, 300200);
    EXPECT_EQ(setup.stationLongitude, -71.25);
    EXPECT_EQ(setup.stationLatitude, 0.5);
    EXPECT_EQ(setup.clearTypeContrast, 2200);
    EXPECT_EQ(setup.clearTypeOrientation, 0);
    SaveSetup(ini_);
    EXPECT_EQ(
        Bytes(),
        "[general]\nautoload=True\nLastPortfolio=/srv/&34a&34.por\nStartupMode=2\nStartupWidth=2000000000\n"
        "StartupHeight=-7\nStartupTop=300\nStartupLeft=200\nStartupState=0\nStationLongitude=-71.25\n"
        "StationLatitude=0.5\nClearTypeContrast=2200\nClearTypeOrientation=0\n"
        "StartupLastNonMinimizedState=2\r\n");
}

TEST_F(SetupValuesTest, ForgetsTheLastPortfolioWithoutAutoLoad) {
    tessaloom::Setup().autoLoad = false;
    tessaloom::Setup().lastPortfolio = "/srv/a.por";
    SaveSetup(ini_);
    LoadSetup(ini_, 15, 15);
    EXPECT_FALSE(tessaloom::Setup().autoLoad);
    EXPECT_EQ(tessaloom::Setup().lastPortfolio, "");
}

}  // namespace
}  // namespace tessaloom
