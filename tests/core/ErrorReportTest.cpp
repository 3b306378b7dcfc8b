#include "core/ErrorReport.h"

#include "core/Version.h"
#include "locale/Error.h"
#include "support/Testing.h"

namespace tessaloom::testing {
namespace {

/// What is reported while `body` runs trapped.
template <typename Body>
std::optional<ErrorReport> Reported(Body body) {
    std::optional<ErrorReport> last;
    const ErrorReporter before = SetErrorReporter([&](const ErrorReport& report) { last = report; });
    EXPECT_EQ(Trap({"A.cls", "Get"}, body), 0);
    SetErrorReporter(before);
    return last;
}

TEST(Trap, ReportsWhateverIsThrownAndYieldsTheZeroValue) {
    const auto report = Reported([]() -> int { throw Error(ErrorNumber::Overflow); });
    ASSERT_TRUE(report);
    EXPECT_EQ(report->module + report->procedure, "A.clsGet");
    EXPECT_EQ(report->number, 6);
    EXPECT_EQ(report->description, "Overflow");
    EXPECT_GT(report->line, 0);
    EXPECT_EQ(Reported([]() -> int { throw std::bad_alloc(); }).value().number, 7);
    EXPECT_EQ(Reported([]() -> int { throw 5; }).value().description, "Internal error");
    EXPECT_FALSE(Reported([] { return 0; }));
}

TEST(ErrorReport, ReadsAsTheWindowShowsIt) {
    const ErrorReport report{"Canvas.cls", "DoSaves", 12, 6, "Overflow"};
    EXPECT_EQ(report.Text(), "Error Detected\nwith this information:\nVersion: " + std::string(Version) +
                                 "\nModule: Canvas.cls\nProcedure: DoSaves\nLine #: 12\nError #: 6\n"
                                 "Error Description: Overflow");
}

}  // namespace
}  // namespace tessaloom::testing
