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
    INI settings;
    std::unique_ptr<tessaloom::Portfolio> portfolio;
};

/// The running program; null before start-up and after shutdown.
std::unique_ptr<Program>& Running();

/// A new, empty portfolio in place of the one that was open; the commands that need one are enabled.
tessaloom::Portfolio& MakePortfolio(Program& program);

/// Closes the set-up windows of the open portfolio, if any, unloads and releases it.
void ReleasePortfolio(Program& program);

}  // namespace tessaloom::modMain
