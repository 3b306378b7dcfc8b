#pragma once

#include <functional>
#include <source_location>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace tessaloom {

/// Where an error was trapped: the module file name as the report shows it ("Canvas.cls") and the routine.
struct Procedure {
    std::string_view module;
    std::string_view name;
};

/// One entry of the common error report.
struct ErrorReport {
    static constexpr std::string_view Title = "Error Debug Report";

    std::string module;
    std::string procedure;
    int line = 0;
    int number = 0;
    std::string description;

    /// The report as the window shows it: a line for each of its fixed words, with the program's version.
    std::string Text() const;

    bool operator==(const ErrorReport&) const = default;
};

using ErrorReporter = std::function<void(const ErrorReport&)>;

/// Where reports go from now on; an empty reporter drops them. Returns the one in force before.
///
/// The reporter must not throw. Until one is set, reports go nowhere.
ErrorReporter SetErrorReporter(ErrorReporter reporter);

/// Sends `report` to the common error report.
void Report(const ErrorReport& report);

/// Reports the exception being handled. To be called from a handler only.
void ReportCurrentError(Procedure where, unsigned line) noexcept;

/// Runs `body`. What it throws goes to the common error report; the result is then its type's zero value.
template <typename Body>
std::invoke_result_t<Body> Trap(Procedure where, Body&& body,
                                std::source_location at = std::source_location::current()) {
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        ReportCurrentError(where, at.line());
        return std::invoke_result_t<Body>();
    }
}

}  // namespace tessaloom
