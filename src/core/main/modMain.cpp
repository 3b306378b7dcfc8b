#include "core/main/modMain.h"

#include <array>
#include <chrono>
#include <utility>

#include "core/ErrorReport.h"
#include "core/Log.h"
#include "core/RunFlags.h"
#include "core/SetupValues.h"
#include "core/main/DocumentCommands.h"
#include "core/main/Limits.h"
#include "core/main/Program.h"
#include "core/modNumbers.h"
#include "imaging/modPictureBox.h"
#include "model/Canvas.h"
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

std::string SettingsPath(const Platform& platform) {
    return platform.fileSystem.CurrentFolder() + "\\" + SettingsFileName;
}

void LoadSettings(const Platform& platform, INI& settings) {
    LoadSetup(settings, platform.mainWindow.TwipsPerPixelX(), platform.mainWindow.TwipsPerPixelY());
    UseSetup(platform);
    LoadLimits(platform, settings);
}

/// Start-up modes, as "StartupMode" holds them.
enum StartupMode { StartMinimized = 0, StartAsLast = 1, StartMaximized = 2 };

void PlaceMainWindow(MainWindow& window) {
    // The window keeps the setup values current while it is placed: what was read is what counts.
    const SetupValues setup = Setup();
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
    const bool asRead = setup.startupMode != StartMinimized && setup.startupMode != StartMaximized;
    const int last = asRead ? setup.startupLastNonMinimizedState : static_cast<int>(WindowState::Maximized);
    Setup().startupLastNonMinimizedState = last;
    window.Show();
    Setup().startupLastNonMinimizedState = last;
}

void LoadPortfolio(Program& program, const std::string& file) {
    Dialogs& dialogs = program.platform.dialogs;
    tessaloom::Portfolio& portfolio = MakePortfolio(program);
    portfolio.SetFileName(file);
    program.platform.mainWindow.CloseSplash();
    dialogs.ShowStatus("Loading...");
    portfolio.LoadFile();
    dialogs.HideStatus();
    program.platform.mainWindow.EnablePortfolioCommands(true);
}

/// The portfolio to open at start-up; "" for none.
std::string FirstPortfolio(const StartOptions& options) {
    if (options.portfolio.empty()) return Setup().autoLoad ? Setup().lastPortfolio : "";
    Setup().lastPortfolio = options.portfolio;
    return options.portfolio;
}

/// Asks about unsaved changes, where there is somebody to ask. False when the close is called off.
bool SaveBeforeClosing(Program& program) {
    return !program.platform.dialogs.Interactive() ||
           OfferToSave(program, "Would you like to save all files?", "Save Files?");
}

/// Calls the script's shutdown hook. False when it cancelled the shutdown.
bool CallShutdownHook(Program& program) {
    Flags().cancelShutdown = false;
    if (program.portfolio && program.portfolio->Script().Enabled())
        program.portfolio->Script().CallShutdown();
    return !Flags().cancelShutdown;
}

/// Asks the script, then the person. A close that is called off leaves the running flag set, unless the
/// system asked for the end while the person was thinking: the next tick then closes after all.
bool MayClose(Program& program, CloseCause cause) {
    const Busy busy(program);
    // An unexpected error here is reported and must not keep the program from ending.
    return !Trap({Module, "MDIForm_QueryUnload"}, [&] {
        if (CallShutdownHook(program)) {
            if (cause == CloseCause::Program || SaveBeforeClosing(program)) return false;
            Flags().running = !Flags().withoutQuestions;
        } else {
            Flags() = {.running = true};
        }
        return true;
    });
}

/// The steps of a tick that stop as soon as the running flag is found false.
void UpdateEverything(tessaloom::Portfolio& portfolio) {
    constexpr std::array Steps{
        &tessaloom::Portfolio::UpdateOtherPre,   &tessaloom::Portfolio::UpdateImages,
        &tessaloom::Portfolio::UpdateVideoFeeds, &tessaloom::Portfolio::UpdateInputDevices,
        &tessaloom::Portfolio::UpdateOtherPost,
    };
    const auto start = std::chrono::steady_clock::now();
    for (const auto step : Steps) {
        (portfolio.*step)();
        if (!Flags().running) return;
    }
    const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
    portfolio.SetCycleTime(taken.count());
}

void CloseFromTick() {
    MDIForm_QueryUnload(Flags().withoutQuestions ? CloseCause::Program : CloseCause::Person);
}

}  // namespace

// Not a static within the function: scripts ask for the portfolio at every use of a member.
static constinit std::unique_ptr<Program> running;

std::unique_ptr<Program>& Running() { return running; }

bool ScriptRuns(const Program& program) { return program.portfolio && program.portfolio->Script().Running(); }

tessaloom::Portfolio& MakePortfolio(Program& program) {
    program.portfolio = std::make_unique<tessaloom::Portfolio>(program.platform);
    program.portfolio->SetViewFactory(program.views);
    program.portfolio->Script().SetEngine(program.scripts);
    return *program.portfolio;
}

void ReleasePortfolio(Program& program) {
    if (!program.portfolio) return;
    program.platform.mainWindow.UnloadSetupWindows();
    program.portfolio->PortfolioUnload();
    program.portfolio.reset();
}

tessaloom::Portfolio* OpenPortfolio() { return Running() ? Running()->portfolio.get() : nullptr; }

void UseSetup(const Platform& platform) {
    modTime::SetStation(Setup().stationLatitude, Setup().stationLongitude);
    const ClearTypeSettings clearType{Setup().clearTypeContrast,
                                      static_cast<SubPixelOrder>(Setup().clearTypeOrientation)};
    if (platform.fonts.ClearType() == clearType) return;
    platform.fonts.SetClearType(clearType);
    tessaloom::Portfolio* const portfolio = OpenPortfolio();
    for (int slot = 1; portfolio && slot <= Portfolio::MaxCanvas; ++slot)
        if (Canvas& canvas = portfolio->Canvas(slot); canvas.Enabled()) canvas.ForceReload();
}

void PeekSettings(const Platform& platform) {
    INI settings(platform.profile, SettingsPath(platform));
    settings.Begin();
    LoadSettings(platform, settings);
    settings.Rollback();
    LoadSomeVariables(platform);
}

bool Main(Platform& platform, const StartOptions& options) {
    Flags() = {};
    Flags().running = Flags().startingUp = true;
    const std::string folder = platform.fileSystem.CurrentFolder();
    if (folder.empty()) {
        Log(LogLevel::Critical, "The current directory is gone");
        Flags() = {};
        return false;
    }
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
    Running() = std::make_unique<Program>(Program{platform, options.views, options.scripts,
                                                  INI(platform.profile, SettingsPath(platform)), nullptr});
    Program& program = *Running();
    LoadSettings(platform, program.settings);
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
    return !Flags().quitDuringStartup || !MDIForm_QueryUnload(CloseCause::Program);
}

void TimerTick() {
    Program* program = Running().get();
    if (!program || ScriptRuns(*program)) return;
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
    if (program.busy > 0 || ScriptRuns(program)) return false;
    if (!MayClose(program, cause)) return false;
    program.platform.mainWindow.RemoveTrayIcon();
    modMain_Shutdown();
    return true;
}

void modMain_Shutdown() {
    if (!Running()) return;
    Program& program = *Running();
    Platform& platform = program.platform;
    ++program.busy;  // for good: nothing closes it a second time meanwhile
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
    portfolio->ReopenFeeds();
    // A script that is switched off must not run, and loading it runs its outermost statements.
    if (portfolio->Script().Enabled()) portfolio->Script().ResetScript();
}

void ForceEverything() {
    if (tessaloom::Portfolio* portfolio = OpenPortfolio()) portfolio->ForceUpdate();
}

}  // namespace tessaloom::modMain
