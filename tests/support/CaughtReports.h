#pragma once

#include "core/ErrorReport.h"
#include "support/Testing.h"

namespace tessaloom::testing {

/// Catches what goes to the common error report for as long as it lives.
class CaughtReports {
public:
    CaughtReports()
        : before_(SetErrorReporter([this](const ErrorReport& report) { reports_.push_back(report); })) {}
    ~CaughtReports() { SetErrorReporter(std::move(before_)); }
    CaughtReports(const CaughtReports&) = delete;
    CaughtReports& operator=(const CaughtReports&) = delete;

    int Count() const { return static_cast<int>(reports_.size()); }

    /// Reports whose description holds `words`.
    int CountAbout(std::string_view words) const {
        return static_cast<int>(std::count_if(
            reports_.begin(), reports_.end(),
            [&](const ErrorReport& report) { return report.description.find(words) != std::string::npos; }));
    }

    void Clear() { reports_.clear(); }

private:
    std::vector<ErrorReport> reports_;
    ErrorReporter before_;
};

}  // namespace tessaloom::testing
