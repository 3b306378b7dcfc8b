#pragma once

#include <memory>

#include "core/INI.h"
#include "core/main/modMain.h"
#include "model/Portfolio.h"
#include "platform/Platform.h"

namespace tessaloom::modMain {

/// What the program holds between start-up and shutdown.
struct Program {
    Platform& platform;
    CanvasViewFactory views;
    ScriptEngine* scripts;
    INI settings;
    std::unique_ptr<tessaloom::Portfolio> portfolio;
    int busy = 0;  ///< Commands and closings under way: a box that they show lets ticks run.
};

/// Keeps the program from being taken down while it lives.
class Busy {
public:
    explicit Busy(Program& program) : program_(program) { ++program_.busy; }
    ~Busy() { --program_.busy; }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

private:
    Program& program_;
};

/// A procedure of the open portfolio's script is on the stack. A box that it shows lets ticks, menu commands
/// and a close come; nothing that the script may be working with must go meanwhile.
bool ScriptRuns(const Program& program);

/// The running program; null before start-up and after shutdown.
std::unique_ptr<Program>& Running();

/// A new, empty portfolio in place of the one that was open. The caller enables the commands that need one.
tessaloom::Portfolio& MakePortfolio(Program& program);

/// Closes the set-up windows of the open portfolio, if any, unloads and releases it.
void ReleasePortfolio(Program& program);

}  // namespace tessaloom::modMain
