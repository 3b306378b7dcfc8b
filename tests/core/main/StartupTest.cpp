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

using Lines = std::vector<std::string>;

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
    auto Calls(const char* name) const {
        return std::count(it_.mainWindow.calls.begin(), it_.mainWindow.calls.end(), name);
    }
    /// Somebody clears the running flag; then comes the next tick.
    void EndWithATick() {
        Flags().running = false;
        it_.timer.Tick();
    }
    /// Whether that closed everything.
    bool Closed() const { return !modMain::OpenPortfolio() && Calls("Unload") > 0; }

    TestPlatform it_;
};

TEST_F(StartupTest, CompletesTheSettingsFileAndStartsMaximized) {
    ASSERT_TRUE(Start());
    EXPECT_NE(Settings().find("StartupHeight=9000\r\n"), std::string::npos);
    EXPECT_EQ(modMain::OpenPortfolio(), nullptr);
    EXPECT_EQ(it_.timer.milliseconds, 10);
    EXPECT_FALSE(Flags().startingUp);
    EXPECT_EQ(it_.mainWindow.calls, (Lines{"ShowSplash", "Load Tessaloom", "SetState 2", "Show",
                                           "RedrawSplash", "CloseSplash", "Show", "UnloadSplash"}));
}

TEST_F(StartupTest, PlacesTheWindowByItsMode) {
    const struct {
        int mode, state;  // as read
        std::optional<WindowState> shown;
        bool placed;
        int lastNonMinimized;
    } rows[] = {
  // clang-format off
        {0, 2, WindowState::Minimized, false, 2},
        {2, 2, WindowState::Maximized, false, 2},
        {1, 1, WindowState::Minimized, false, 0},
        {1, 0, WindowState::Normal, true, 0},
        {9, 2, std::nullopt, false, 0},
  // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.mode);
        it_.mainWindow.state.reset();
        it_.mainWindow.place.reset();
        WriteSettings("StartupMode=" + std::to_string(row.mode) + "\r\nStartupState=" +
                      std::to_string(row.state) + "\r\nStartupLastNonMinimizedState=0\r\n");
        ASSERT_TRUE(Start());
        EXPECT_EQ(it_.mainWindow.state, row.shown);
        EXPECT_EQ(it_.mainWindow.place.has_value(), row.placed);
        EXPECT_EQ(tessaloom::Setup().startupLastNonMinimizedState, row.lastNonMinimized);
        modMain::modMain_Shutdown();
    }
}

TEST_F(StartupTest, OpensThePortfolioAskedForOrTheLastOneUnlessToldNotTo) {
    const struct {
        const char *settings, *asked, *opened, *remembered;
    } rows[] = {
  // clang-format off
        {"LastPortfolio=a.por\r\n", "", "a.por", "a.por"},
        {"AutoLoad=False\r\nLastPortfolio=a.por\r\n", "", nullptr, ""},
        {"AutoLoad=True\r\nLastPortfolio=other.por\r\n", "a.por", "a.por", "a.por"},
  // clang-format on
    };
    it_.files.WriteFile("a.por", "[WebServer]\r\nPort=8080\r\n");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.settings);
        WriteSettings(row.settings);
        it_.dialogs.status.clear();
        it_.mainWindow.portfolioCommands = false;
        ASSERT_TRUE(Start({.portfolio = row.asked, .views = {}}));
        const Portfolio* portfolio = modMain::OpenPortfolio();
        ASSERT_EQ(portfolio != nullptr, row.opened != nullptr);
        EXPECT_EQ(it_.mainWindow.portfolioCommands, row.opened != nullptr);
        if (portfolio) {
            EXPECT_EQ(portfolio->FileName(), row.opened);
            EXPECT_EQ(it_.dialogs.status, (Lines{"Loading...", ""}));
        }
        modMain::modMain_Shutdown();
        EXPECT_NE(Settings().find(std::string("LastPortfolio=") + row.remembered + "\r\n"),
                  std::string::npos);
    }
    EXPECT_FALSE(it_.files.FileExists("other.por"));
}

TEST_F(StartupTest, HonoursACloseAskedForWhileStarting) {
    it_.mainWindow.pendingEvents = [] {
        EXPECT_FALSE(modMain::MDIForm_QueryUnload(modMain::CloseCause::Person));
    };
    EXPECT_FALSE(Start());
    EXPECT_EQ(Calls("UnloadSplash"), 1);
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
        engine_.procedures.assign(1, {"Shutdown", 0});
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
    Flags().cancelShutdown = true;  // a stale wish does not count
    it_.mainWindow.calls.clear();
    it_.dialogs.status.clear();
    EXPECT_TRUE(modMain::MDIForm_QueryUnload(modMain::CloseCause::Person));
    EXPECT_EQ(engine_.calls, (Lines{"Shutdown()", "Shutdown()"}));
    EXPECT_EQ(it_.mainWindow.calls,
              (Lines{"RemoveTrayIcon", "Hide", "UnloadSetupWindows", "UnloadSecondaryWindows", "Unload"}));
    EXPECT_EQ(it_.dialogs.status, (Lines{"Shutting Down...", ""}));
    EXPECT_EQ(it_.timer.milliseconds, 0);
    EXPECT_EQ(modMain::OpenPortfolio(), nullptr);
    EXPECT_FALSE(Flags().running);
}

TEST_F(ClosingTest, IsCalledOffByTheScript) {
    StartWithScript([] { Flags().cancelShutdown = true; });
    EndWithATick();
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
        EndWithATick();
        EXPECT_EQ(it_.dialogs.shown, Lines{"Save Files?: Would you like to save all files?"});
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
        EndWithATick();
        EXPECT_TRUE(Closed());
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
    EXPECT_EQ(Calls("Unload"), 1);
}

TEST_F(ClosingTest, WaitsForTheBoxOfACommand) {
    Start();
    it_.dialogs.whileShown = [&] {
        EndWithATick();
        EXPECT_FALSE(Closed());
    };
    modMain::PortfolioNew();
    it_.timer.Tick();
    EXPECT_TRUE(Closed());
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

TEST_F(ClosingTest, HappensInTheTickInWhichAHookClearsTheRunningFlag) {
    Portfolio& portfolio = StartWithScript();
    engine_.procedures.assign(1, {"Interval", 0});
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
