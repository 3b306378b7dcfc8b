#include "core/ErrorReport.h"

#include <exception>
#include <new>

#include "core/Version.h"
#include "locale/Error.h"

namespace tessaloom {

namespace {

ErrorReporter& Reporter() {
    static ErrorReporter reporter;
    return reporter;
}

}  // namespace

std::string ErrorReport::Text() const {
    return "Error Detected\nwith this information:\nVersion: " + std::string(Version) +
           "\nModule: " + module + "\nProcedure: " + procedure + "\nLine #: " + std::to_string(line) +
           "\nError #: " + std::to_string(number) + "\nError Description: " + description;
}

ErrorReporter SetErrorReporter(ErrorReporter reporter) {
    return std::exchange(Reporter(), std::move(reporter));
}

void Report(const ErrorReport& report) {
    if (Reporter()) Reporter()(report);
}

void ReportCurrentError(Procedure where, unsigned line) noexcept {
    auto report = [&](ErrorNumber number, const char* description) {
        Report({std::string(where.module), std::string(where.name), static_cast<int>(line),
                static_cast<int>(number), description});
    };
    try {
        throw;
    } catch (const Error& error) {
        report(error.Number(), error.what());
    } catch (const std::bad_alloc&) {
        report(ErrorNumber::OutOfMemory, DescriptionOf(ErrorNumber::OutOfMemory));
    } catch (const std::exception& error) {
        report(ErrorNumber::Internal, error.what());
    } catch (...) {
        report(ErrorNumber::Internal, DescriptionOf(ErrorNumber::Internal));
    }
}

}  // namespace tessaloom
