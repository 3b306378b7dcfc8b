#include "core/main/modMain.h"

#include <array>
#include <utility>

#include "core/ErrorReport.h"
#include "core/Log.h"
#include "core/RunFlags.h"
#include "core/SetupValues.h"
#include "core/main/DocumentCommands.h"
#include "core/main/Program.h"
#include "core/modNumbers.h"
#include "imaging/modPictureBox.h"
#include "platform/Desktop.h"
#include "platform/Dialogs.h"
#include "platform/FileSystem.h"
#include "platform/Fonts.h"
#include "platform/MainWindow.h"
#include "platform/Timer.h"
#include "script/host/Script.h"
#include "time/modTime.h"
#include "video/VideoFeed.h"

namespace tessaloom::modMain {

namespace {

constexpr std::string_view Module = "modMain.bas";

void LoadSomeVariables(const Platform& platform) { modTime::LoadTimeZoneLookup(platform.fileSystem); }

void LoadSettings(Program& program) {
    const MainWindow& window = program.platform.mainWindow;
    LoadSetup(program.settings, window.TwipsPerPixelX(), window.TwipsPerPixelY());
    modTime::SetStation(Setup().stationLatitude, Setup().stationLongitude);
    program.platform.fonts.SetClearType(
        {Setup().clearTypeContrast, static_cast<SubPixelOrder>(Setup().clearTypeOrientation)});
}

/// Start-up modes, as "StartupMode" holds them.
enum StartupMode { StartMinimized = 0, StartAsLast = 1, StartMaximized = 2 };

void PlaceMainWindow(MainWindow& window) {
    SetupValues& setup = Setup();
    window.Load("Tessaloom");
    switch (setup.startupMode) {
        case StartMinimized:
            window.SetState(WindowState::Minimized);
            break;
        case StartMaximized:
            window.SetState(WindowState::Maximized);
            break;
        case StartAsLast:
            window.SetState(static_cast<WindowState>(Clamped(setup.startupState, {0, 2})));
            if (setup.startupState == static_cast<int>(WindowState::Normal))
                window.SetPlace(
                    {setup.startupLeft, setup.startupTop, setup.startupWidth, setup.startupHeight});
            break;
        default:
            break;
    }
    if (setup.startupMode == StartMinimized || setup.startupMode == StartMaximized)
        setup.startupLastNonMinimizedState = static_cast<int>(WindowState::Maximized);
    window.Show();
}

void LoadPortfolio(Program& program, const std::string& file) {
    Dialogs& dialogs = program.platform.dialogs;
    tessaloom::Portfolio& portfolio = MakePortfolio(program);
    portfolio.SetFileName(file);
    program.platform.mainWindow.CloseSplash();
    dialogs.ShowStatus("Loading...");
    portfolio.LoadFile();
    dialogs.HideStatus();
}

/// The portfolio to open at start-up; "" for none.
std::string FirstPortfolio(const StartOptions& options) {
    if (options.portfolio.empty()) return Setup().autoLoad ? Setup().lastPortfolio : "";
    Setup().lastPortfolio = options.portfolio;
    return options.portfolio;
}

/// Asks about unsaved changes, where there is somebody to ask. False when the close is called off.
bool SaveBeforeClosing(Program& program) {
    Dialogs& dialogs = program.platform.dialogs;
    if (!program.portfolio || !program.portfolio->NeedSaving() || !dialogs.Interactive()) return true;
    switch (dialogs.MessageBox("Would you like to save all files?", "Save Files?", Buttons::YesNoCancel)) {
        case Answer::Yes:
            return SaveAllProc(true);
        case Answer::No:
            return true;
        default:
            return false;
    }
}

/// Calls the script's shutdown hook. False when it cancelled the shutdown.
bool CallShutdownHook(Program& program) {
    Flags().cancelShutdown = false;
    if (program.portfolio && program.portfolio->Script().Enabled())
        program.portfolio->Script().CallShutdown();
    return !Flags().cancelShutdown;
}

/// The steps of a tick that stop as soon as the running flag is found false.
void UpdateEverything(tessaloom::Portfolio& portfolio) {
    constexpr std::array Steps{
        &tessaloom::Portfolio::UpdateOtherPre,   &tessaloom::Portfolio::UpdateImages,
        &tessaloom::Portfolio::UpdateVideoFeeds, &tessaloom::Portfolio::UpdateInputDevices,
        &tessaloom::Portfolio::UpdateOtherPost,
    };
    for (const auto step : Steps) {
        (portfolio.*step)();
        if (!Flags().running) return;
    }
}

void CloseFromTick() {
    MDIForm_QueryUnload(Flags().withoutQuestions ? CloseCause::Program : CloseCause::Person);
}

}  // namespace

std::unique_ptr<Program>& Running() {
    static std::unique_ptr<Program> program;
    return program;
}

tessaloom::Portfolio& MakePortfolio(Program& program) {
    program.portfolio = std::make_unique<tessaloom::Portfolio>(program.platform);
    program.portfolio->SetViewFactory(program.views);
    program.platform.mainWindow.EnablePortfolioCommands(true);
    return *program.portfolio;
}

void ReleasePortfolio(Program& program) {
    if (!program.portfolio) return;
    program.platform.mainWindow.UnloadSetupWindows();
    program.portfolio->PortfolioUnload();
    program.portfolio.reset();
}

tessaloom::Portfolio* OpenPortfolio() { return Running() ? Running()->portfolio.get() : nullptr; }

bool Main(Platform& platform, const StartOptions& options) {
    Flags() = {};
    Flags().running = Flags().startingUp = true;
    const std::string folder = platform.fileSystem.CurrentFolder();
    if (!platform.desktop.ClaimInstance(folder)) {
        platform.dialogs.MessageBox("There is already an instance of Tessaloom running.", "Already Running");
        Flags() = {};
        return false;
    }
    MainWindow& window = platform.mainWindow;
    window.ShowSplash();
    modNumbers::InitNumberFormat(platform.locale);
    modPictureBox::InitializePictureBox();
    LoadSomeVariables(platform);
    Flags().quitDuringStartup = false;
    Running() = std::make_unique<Program>(
        Program{platform, options.views, INI(platform.profile, folder + "\\" + SettingsFileName), nullptr});
    Program& program = *Running();
    LoadSettings(program);
    PlaceMainWindow(window);
    window.RedrawSplash();

    if (const std::string file = FirstPortfolio(options); file.empty()) {
        window.CloseSplash();
        window.DoEvents();
    } else {
        Trap({Module, "Main"}, [&] { LoadPortfolio(program, file); });
    }
    window.Show();
    window.UnloadSplash();
    platform.timer.Start(TickInterval, [] { TimerTick(); });
    Flags().startingUp = false;
    if (Flags().quitDuringStartup) return !MDIForm_QueryUnload(CloseCause::Program);
    return true;
}

void TimerTick() {
    Program* program = Running().get();
    if (!program) return;
    Trap({Module, "tmrUpdateCanvas_Timer"}, [&] {
        if (program->portfolio) {
            program->portfolio->SetCaptureTime(modTime::Clock());
            if (Flags().running) UpdateEverything(*program->portfolio);
        }
        if (!Flags().running) CloseFromTick();
    });
}

bool MDIForm_QueryUnload(CloseCause cause) {
    if (!Running()) return true;
    if (Flags().startingUp) {
        Flags().quitDuringStartup = true;
        return false;
    }
    Program& program = *Running();
    // An unexpected error here is reported and must not keep the program from ending.
    const bool calledOff = Trap({Module, "MDIForm_QueryUnload"}, [&] {
        return !CallShutdownHook(program) || (cause == CloseCause::Person && !SaveBeforeClosing(program));
    });
    if (calledOff) {
        Flags().running = true;
        Flags().withoutQuestions = false;
        return false;
    }
    program.platform.mainWindow.RemoveTrayIcon();
    modMain_Shutdown();
    return true;
}

void modMain_Shutdown() {
    if (!Running()) return;
    Program& program = *Running();
    Platform& platform = program.platform;
    platform.dialogs.ShowStatus("Shutting Down...");
    Flags().running = false;
    platform.timer.Stop();
    Trap({Module, "modMain_Shutdown"}, [&] { SaveSetup(program.settings); });
    platform.mainWindow.Hide();
    Trap({Module, "modMain_Shutdown"}, [&] { ReleasePortfolio(program); });
    platform.mainWindow.UnloadSecondaryWindows();
    platform.dialogs.HideStatus();
    platform.dialogs.UnloadStatus();
    Running().reset();
    platform.mainWindow.Unload();
    modPictureBox::TerminatePictureBox();
}

void ReloadSources() {
    tessaloom::Portfolio* portfolio = OpenPortfolio();
    if (!portfolio) return;
    Trap({Module, "ReloadSources"}, [&] { portfolio->Script().ResetScript(); });
}

void ForceEverything() {
    if (tessaloom::Portfolio* portfolio = OpenPortfolio()) portfolio->ForceUpdate();
}

}  // namespace tessaloom::modMain
