#pragma once

#include <span>
#include <string>
#include <variant>

#include "core/Log.h"

namespace tessaloom {

/// What the program was asked to do.
struct CommandLine {
    enum class Action { Run, Render, Check, ListDevices, Version, Help };

    Action action = Action::Run;
    bool headless = false;
    std::string home;       ///< Folder to change into first; "" for none.
    std::string portfolio;  ///< Portfolio to open in place of the last one; "" for none.
    std::string canvas;     ///< Canvas file to render.
    std::string out;        ///< JPEG file to render into.
    std::string check;      ///< Document to check.
    LogLevel logLevel = LogLevel::Info;

    /// The text of `--help`.
    static std::string Usage();
};

/// The arguments behind the program's name, or what is wrong with them.
///
/// A value follows its option as the next argument or behind "=". Unknown options, missing values and options
/// that exclude each other are errors.
std::variant<CommandLine, std::string> ParseCommandLine(std::span<const char* const> arguments);

}  // namespace tessaloom
