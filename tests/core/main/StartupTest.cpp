#include <gtest/gtest.h>

#include <algorithm>

#include "core/RunFlags.h"
#include "core/SetupValues.h"
#include "core/main/DocumentCommands.h"
#include "core/main/modMain.h"
#include "model/Portfolio.h"
#include "script/host/Script.h"
#include "support/RecordingScriptEngine.h"
#include "support/TestPlatform.h"

namespace tessaloom::testing {
namespace {

class StartupTest : public ::testing::Test {
protected:
    ~StartupTest() override {
        modMain::modMain_Shutdown();
        tessaloom::Setup() = {};
    }

    bool Start(const modMain::StartOptions& options = {}) { return modMain::Main(it_.platform, options); }

    std::string SettingsPath() const { return it_.files.CurrentFolder() + "\\Tessaloom.INI"; }
    std::string Settings() { return it_.files.ReadFile(SettingsPath(), 100'000).value_or(""); }
    void WriteSettings(const std::string& keys) {
        it_.files.WriteFile(SettingsPath(), "[General]\r\n" + keys);
    }
    bool Called(const std::string& call) const {
        return std::find(it_.mainWindow.calls.begin(), it_.mainWindow.calls.end(), call) !=
               it_.mainWindow.calls.end();
    }

    TestPlatform it_;
};

TEST_F(StartupTest, CompletesTheSettingsFileAndStartsMaximized) {
    ASSERT_TRUE(Start());
    EXPECT_EQ(Settings(),
              "[General]\r\nAutoLoad=True\r\nLastPortfolio=\r\nStartupMode=2\r\nStartupWidth=12000\r\n"
              "StartupHeight=9000\r\nStartupTop=0\r\nStartupLeft=0\r\nStartupState=2\r\n"
              "StartupLastNonMinimizedState=2\r\nStationLongitude=0\r\nStationLatitude=0\r\n"
              "ClearTypeContrast=1400\r\nClearTypeOrientation=1\r\n");
    EXPECT_EQ(modMain::OpenPortfolio(), nullptr);
    EXPECT_EQ(it_.timer.milliseconds, 10);
    EXPECT_FALSE(Flags().startingUp);
    EXPECT_EQ(it_.mainWindow.calls,
              (std::vector<std::string>{"ShowSplash", "Load Tessaloom", "SetState 2", "Show", "RedrawSplash",
                                        "CloseSplash", "Show", "UnloadSplash"}));
}

TEST_F(StartupTest, PlacesTheWindowByItsMode) {
    const struct {
        const char* keys;
        std::optional<WindowState> state;
        bool placed;
        int lastNonMinimized;
    } rows[] = {
        {"StartupMode=0\r\nStartupLastNonMinimizedState=0\r\n",                   WindowState::Minimized, false, 2},
        {"StartupMode=2\r\nStartupLastNonMinimizedState=0\r\n",                   WindowState::Maximized, false, 2},
        {"StartupMode=1\r\nStartupState=1\r\nStartupLastNonMinimizedState=0\r\n", WindowState::Minimized,
         false,                                                                                                  0},
        {"StartupMode=1\r\nStartupState=0\r\nStartupLastNonMinimizedState=0\r\n", WindowState::Normal,    true,
         0                                                                                                        },
        {"StartupMode=9\r\nStartupLastNonMinimizedState=0\r\n",                   std::nullopt,           false, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.keys);
        it_.mainWindow.state.reset();
        it_.mainWindow.place.reset();
        WriteSettings(row.keys);
        ASSERT_TRUE(Start());
        EXPECT_EQ(it_.mainWindow.state, row.state);
        EXPECT_EQ(it_.mainWindow.place.has_value(), row.placed);
        EXPECT_EQ(tessaloom::Setup().startupLastNonMinimizedState, row.lastNonMinimized);
        modMain::modMain_Shutdown();
    }
}

TEST_F(StartupTest, RefusesASecondInstanceAndTouchesNothing) {
    it_.desktop.otherInstance = true;
    EXPECT_FALSE(Start());
    EXPECT_EQ(
        it_.dialogs.shown,
        (std::vector<std::string>{"Already Running: There is already an instance of Tessaloom running."}));
    EXPECT_FALSE(it_.files.FileExists(SettingsPath()));
    EXPECT_TRUE(it_.mainWindow.calls.empty());
    EXPECT_FALSE(Flags().running);
}

TEST_F(StartupTest, LoadsTheLastPortfolioUnlessToldNotTo) {
    it_.files.WriteFile("a.por", "[WebServer]\r\nPort=8080\r\n");
    WriteSettings("LastPortfolio=a.por\r\n");
    ASSERT_TRUE(Start());
    ASSERT_NE(modMain::OpenPortfolio(), nullptr);
    EXPECT_EQ(modMain::OpenPortfolio()->FileName(), "a.por");
    EXPECT_TRUE(it_.mainWindow.portfolioCommands);
    EXPECT_EQ(it_.dialogs.status, (std::vector<std::string>{"Loading...", ""}));
    modMain::modMain_Shutdown();

    WriteSettings("AutoLoad=False\r\nLastPortfolio=a.por\r\n");
    ASSERT_TRUE(Start());
    EXPECT_EQ(modMain::OpenPortfolio(), nullptr);
    modMain::modMain_Shutdown();
    EXPECT_NE(Settings().find("LastPortfolio=\r\n"), std::string::npos);
}

TEST_F(StartupTest, OpensThePortfolioAskedForAndRemembersIt) {
    WriteSettings("AutoLoad=True\r\nLastPortfolio=other.por\r\n");
    ASSERT_TRUE(Start({.portfolio = "a.por", .views = {}}));
    EXPECT_EQ(modMain::OpenPortfolio()->FileName(), "a.por");
    modMain::modMain_Shutdown();
    EXPECT_NE(Settings().find("LastPortfolio=a.por\r\n"), std::string::npos);
    EXPECT_FALSE(it_.files.FileExists("other.por"));
}

TEST_F(StartupTest, HonoursACloseAskedForWhileStarting) {
    it_.mainWindow.pendingEvents = [] {
        EXPECT_FALSE(modMain::MDIForm_QueryUnload(modMain::CloseCause::Person));
    };
    EXPECT_FALSE(Start());
    EXPECT_TRUE(Called("UnloadSplash"));
    EXPECT_EQ(it_.mainWindow.calls.back(), "Unload");
    EXPECT_EQ(it_.timer.milliseconds, 0);
}

class ClosingTest : public StartupTest {
protected:
    ClosingTest() {
        it_.files.WriteFile("a.por", "[Scripting]\r\nAllowShutdown=True\r\n");
        it_.files.WriteFile("script.txt", "Sub Shutdown\nEnd Sub\n");
    }

    ~ClosingTest() override { modMain::modMain_Shutdown(); }  // the script lets go of the engine

    /// Starts with an open portfolio whose script has a shutdown hook that does `hook`.
    Portfolio& StartWithScript(std::function<void()> hook = {}) {
        Start({.portfolio = "a.por", .views = {}});
        Portfolio& portfolio = *modMain::OpenPortfolio();
        engine_.procedures = {
            {"Shutdown", 0}
        };
        engine_.calls.clear();
        engine_.during = std::move(hook);
        portfolio.Script().SetEngine(&engine_);
        portfolio.Script().SetEnabled(true);
        portfolio.SetNeedSaving(false);
        return portfolio;
    }

    RecordingScriptEngine engine_;
};

TEST_F(ClosingTest, CallsTheShutdownHookBothTimesAndShutsDownInOrder) {
    StartWithScript();
    it_.mainWindow.calls.clear();
    it_.dialogs.status.clear();
    EXPECT_TRUE(modMain::MDIForm_QueryUnload(modMain::CloseCause::Person));
    EXPECT_EQ(engine_.calls, (std::vector<std::string>{"Shutdown()", "Shutdown()"}));
    EXPECT_EQ(it_.mainWindow.calls, (std::vector<std::string>{"RemoveTrayIcon", "Hide", "UnloadSetupWindows",
                                                              "UnloadSecondaryWindows", "Unload"}));
    EXPECT_EQ(it_.dialogs.status, (std::vector<std::string>{"Shutting Down...", ""}));
    EXPECT_EQ(it_.timer.milliseconds, 0);
    EXPECT_EQ(modMain::OpenPortfolio(), nullptr);
    EXPECT_FALSE(Flags().running);
}

TEST_F(ClosingTest, IsCalledOffByTheScript) {
    Flags().cancelShutdown = true;  // a stale wish does not count
    StartWithScript([] { Flags().cancelShutdown = true; });
    Flags().running = false;
    it_.timer.Tick();
    EXPECT_TRUE(Flags().running);
    EXPECT_NE(modMain::OpenPortfolio(), nullptr);
    EXPECT_EQ(it_.timer.milliseconds, 10);
    EXPECT_EQ(engine_.calls.size(), 1U);
}

TEST_F(ClosingTest, AsksAboutUnsavedChanges) {
    const struct {
        Answer answer;
        bool closes, saves;
    } rows[] = {
        {Answer::Cancel, false, false},
        {Answer::No,     true,  false},
        {Answer::Yes,    true,  true }
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(static_cast<int>(row.answer));
        Portfolio& portfolio = StartWithScript();
        portfolio.SetShadowIntensity(77);
        portfolio.SetNeedSaving(true);
        it_.files.WriteFile("a.por", "");
        it_.dialogs.shown.clear();
        it_.dialogs.answers = {row.answer};
        Flags().running = false;
        it_.timer.Tick();
        EXPECT_EQ(it_.dialogs.shown,
                  (std::vector<std::string>{"Save Files?: Would you like to save all files?"}));
        EXPECT_EQ(modMain::OpenPortfolio() == nullptr, row.closes);
        EXPECT_EQ(it_.files.ReadFile("a.por", 100'000) != "", row.saves);
        EXPECT_EQ(Flags().running, !row.closes);
        modMain::modMain_Shutdown();
    }
}

TEST_F(ClosingTest, AsksNothingWhenTheSystemEndsTheProgramOrNobodyIsThere) {
    for (const bool person : {true, false}) {
        it_.dialogs.person = person;
        StartWithScript().SetNeedSaving(true);
        Flags().withoutQuestions = person;
        Flags().running = false;
        it_.timer.Tick();
        EXPECT_EQ(modMain::OpenPortfolio(), nullptr);
        EXPECT_TRUE(it_.dialogs.shown.empty());
    }
}

TEST_F(ClosingTest, HappensOnceHoweverOftenItIsAskedFor) {
    int asked = 0;
    StartWithScript([&] {
        ++asked;
        EXPECT_FALSE(modMain::MDIForm_QueryUnload(modMain::CloseCause::Person));
        it_.timer.Tick();
    });
    EXPECT_TRUE(modMain::MDIForm_QueryUnload(modMain::CloseCause::Person));
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(std::count(it_.mainWindow.calls.begin(), it_.mainWindow.calls.end(), "Unload"), 1);
}

TEST_F(ClosingTest, WaitsForTheBoxOfACommand) {
    Start();
    it_.dialogs.whileShown = [&] {
        Flags().running = false;
        it_.timer.Tick();
        EXPECT_NE(modMain::OpenPortfolio(), nullptr);
    };
    modMain::PortfolioNew();
    it_.timer.Tick();
    EXPECT_EQ(modMain::OpenPortfolio(), nullptr);
    EXPECT_EQ(it_.mainWindow.calls.back(), "Unload");
}

TEST_F(ClosingTest, FollowsASignalEvenWhenThePersonThenSaysCancel) {
    StartWithScript().SetNeedSaving(true);
    it_.dialogs.answers = {Answer::Cancel};
    it_.dialogs.whileShown = [] {
        Flags().withoutQuestions = true;
        Flags().running = false;
    };
    EXPECT_FALSE(modMain::MDIForm_QueryUnload(modMain::CloseCause::Person));
    it_.timer.Tick();
    EXPECT_EQ(modMain::OpenPortfolio(), nullptr);
}

TEST_F(ClosingTest, ReloadRunsNoScriptThatIsSwitchedOff) {
    Portfolio& portfolio = StartWithScript();
    portfolio.Script().SetEnabled(false);
    engine_.calls.clear();
    modMain::ReloadSources();
    EXPECT_FALSE(portfolio.Script().Ready());
    portfolio.Script().SetEnabled(true);
    modMain::ReloadSources();
    EXPECT_TRUE(portfolio.Script().Ready());
}

TEST_F(ClosingTest, EndsWithoutAPortfolioToo) {
    Start();
    Flags().running = false;
    it_.timer.Tick();
    EXPECT_EQ(it_.mainWindow.calls.back(), "Unload");
}

TEST_F(ClosingTest, HappensInTheTickInWhichAHookClearsTheRunningFlag) {
    Portfolio& portfolio = StartWithScript();
    engine_.procedures = {
        {"Interval", 0}
    };
    engine_.during = [] { Flags().running = false; };
    portfolio.Script().SetAllowInterval(true);
    portfolio.Script().ResetScript();
    portfolio.Script().ForceUpdate();
    portfolio.SetNeedSaving(false);
    it_.timer.Tick();
    EXPECT_EQ(modMain::OpenPortfolio(), nullptr);
}

}  // namespace
}  // namespace tessaloom::testing
