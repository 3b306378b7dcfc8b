#include "app/CommandLine.h"

#include <array>
#include <optional>
#include <string_view>

namespace tessaloom {

namespace {

using Action = CommandLine::Action;

struct Option {
    std::string_view name;
    std::string_view value;  // The value's name in the usage; empty: the option takes none.
    std::string_view help;
    std::optional<Action> action;
    std::string CommandLine::*field = nullptr;
};

// clang-format off
const std::array<Option, 10> Options{{
    {"--headless",     "",           "run without windows", {}, nullptr},
    {"--home",         "DIR",        "change into DIR first; it holds Tessaloom.INI", {}, &CommandLine::home},
    {"--portfolio",    "FILE",       "open this portfolio in place of the last one", {}, &CommandLine::portfolio},
    {"--render",       "CANVAS.can", "compose one canvas, write it with --out and end", Action::Render, &CommandLine::canvas},
    {"--out",          "FILE.jpg",   "the picture that --render writes", {}, &CommandLine::out},
    {"--check",        "FILE",       "list all that a portfolio or canvas file gets wrong, change nothing", Action::Check, &CommandLine::check},
    {"--list-devices", "",           "list the cameras of this machine", Action::ListDevices, nullptr},
    {"--log-level",    "LEVEL",      "emerg, alert, crit, err, warning, notice, info (the default) or debug", {}, nullptr},
    {"--version",      "",           "print the version", Action::Version, nullptr},
    {"--help",         "",           "print this text", Action::Help, nullptr},
}};
// clang-format on

const Option* Find(std::string_view name) {
    for (const Option& option : Options)
        if (option.name == name) return &option;
    return nullptr;
}

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

/// Stores one option in `line`; what is wrong with it, or "".
std::string Apply(CommandLine& line, const Option& option, const std::string& value, bool& acted) {
    if (option.action) {
        if (acted && line.action != *option.action)
            return std::string(option.name) + " excludes the action before it";
        line.action = *option.action;
        acted = true;
    }
    if (option.field) {
        line.*option.field = value;
    } else if (option.name == "--headless") {
        line.headless = true;
    } else if (option.name == "--log-level") {
        const auto level = LogLevelNamed(value);
        if (!level) return "unknown log level " + Quoted(value);
        line.logLevel = *level;
    }
    return "";
}

std::string Contradiction(const CommandLine& line) {
    if (line.action == Action::Render && line.out.empty()) return "--render needs --out";
    if (line.action != Action::Render && !line.out.empty()) return "--out needs --render";
    if (line.action != Action::Run && !line.portfolio.empty()) return "--portfolio is for running only";
    return "";
}

}  // namespace

std::string CommandLine::Usage() {
    std::string text = "usage: tessaloom [OPTION...]\n\n";
    for (const Option& option : Options) {
        std::string left = "  " + std::string(option.name) + (option.value.empty() ? "" : " ");
        left += option.value;
        left.resize(std::max<std::size_t>(left.size() + 2, 24), ' ');
        text += left + std::string(option.help) + "\n";
    }
    text +=
        "\nSIGTERM and SIGINT end the program in order, SIGHUP reloads the script and reopens the feeds,\n"
        "SIGUSR1 makes every activity due. Exit status: 0 after an orderly end, 2 for bad arguments,\n"
        "78 for a portfolio that cannot work, 1 for any other start that failed.\n";
    return text;
}

std::variant<CommandLine, std::string> ParseCommandLine(std::span<const char* const> arguments) {
    CommandLine line;
    bool acted = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        const std::size_t equals = argument.starts_with("--") ? argument.find('=') : std::string_view::npos;
        const std::string_view name = argument.substr(0, equals);
        const Option* option = Find(name);
        if (!option) return "unknown option " + Quoted(argument);

        std::string value;
        if (option->value.empty()) {
            if (equals != std::string_view::npos) return std::string(name) + " takes no value";
        } else {
            if (equals != std::string_view::npos) {
                value = argument.substr(equals + 1);
            } else if (i + 1 < arguments.size()) {
                value = arguments[++i];
            }
            if (value.empty()) return std::string(name) + " needs a value: " + std::string(option->value);
        }
        if (std::string wrong = Apply(line, *option, value, acted); !wrong.empty()) return wrong;
    }
    if (std::string wrong = Contradiction(line); !wrong.empty()) return wrong;
    return line;
}

}  // namespace tessaloom
