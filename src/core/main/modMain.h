#pragma once

#include <string>

#include "model/CanvasView.h"

namespace tessaloom {
class Portfolio;
class ScriptEngine;
struct Platform;
}  // namespace tessaloom

/// The top of the engine: start-up, the main timer, closing and shutdown. One program exists per process.
///
/// The document commands are in core/main/DocumentCommands.h.
namespace tessaloom::modMain {

/// Milliseconds between two ticks of the main timer.
inline constexpr int TickInterval = 10;

/// The settings file in the current directory at start-up.
inline constexpr const char* SettingsFileName = "Tessaloom.INI";

struct StartOptions {
    std::string portfolio;    ///< Opened in place of the last one, whatever "AutoLoad" says; "" for none.
    CanvasViewFactory views;  ///< Makes the canvas windows; none without a desktop.
    ScriptEngine* scripts = nullptr;  ///< Runs scripts, and outlives the shutdown. Null: none run.
};

/// Brings the program up and starts the main timer. `platform` must outlive the shutdown.
///
/// False when it ended again at once: another instance runs in this directory, or a close was asked for while
/// starting.
bool Main(Platform& platform, const StartOptions& options = {});

/// Makes the setup values that others work with take effect: the station's position and the smoothing of
/// text, with which open canvases are then drawn anew.
void UseSetup(const Platform& platform);

/// Reads the settings without completing their file, for work that needs them and no running program.
void PeekSettings(const Platform& platform);

/// One tick of the main timer `tmrUpdateCanvas`: all due work of the open portfolio, and the orderly end once
/// the running flag is found false.
void TimerTick();

/// Who wants the main window closed.
enum class CloseCause {
    Person,   ///< The window's own close button or menu: unsaved changes are asked about.
    Program,  ///< The program itself: no question.
};

/// The closing sequence. False when it was called off, by the person or by a script's shutdown hook: the
/// program then runs on. A close while starting up is remembered and honoured when start-up has ended.
bool MDIForm_QueryUnload(CloseCause cause);

/// Takes the program down: settings saved, portfolio unloaded, windows gone. Nothing when that was done
/// before.
void modMain_Shutdown();

/// The open portfolio; null when there is none.
tessaloom::Portfolio* OpenPortfolio();

/// Reloads the script and reopens the feeds; makes every activity due. Nothing without a portfolio.
void ReloadSources();
void ForceEverything();

}  // namespace tessaloom::modMain
