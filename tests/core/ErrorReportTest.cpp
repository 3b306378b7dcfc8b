#include "core/ErrorReport.h"

#include <gtest/gtest.h>

#include <optional>

#include "core/Version.h"
#include "locale/Error.h"

namespace tessaloom {
namespace {

class TrapTest : public ::testing::Test {
protected:
    TrapTest() {
        before_ = SetErrorReporter([this](const ErrorReport& report) { report_ = report; });
    }
    ~TrapTest() override { SetErrorReporter(before_); }

    std::optional<ErrorReport> report_;
    ErrorReporter before_;
};

TEST_F(TrapTest, GivesTheResultWhenNothingIsThrown) {
    EXPECT_EQ(Trap({"A.cls", "Get"}, [] { return 7; }), 7);
    EXPECT_FALSE(report_);
}

TEST_F(TrapTest, ReportsWhatIsThrownAndYieldsTheZeroValue) {
    const auto body = []() -> int { throw Error(ErrorNumber::Overflow); };
    EXPECT_EQ(Trap({"A.cls", "Get"}, body), 0);
    ASSERT_TRUE(report_);
    EXPECT_EQ(report_->module, "A.cls");
    EXPECT_EQ(report_->procedure, "Get");
    EXPECT_EQ(report_->number, 6);
    EXPECT_EQ(report_->description, "Overflow");
    EXPECT_GT(report_->line, 0);
}

TEST_F(TrapTest, ReportsForeignExceptionsToo) {
    Trap({"A.cls", "Do"}, [] { throw std::bad_alloc(); });
    ASSERT_TRUE(report_);
    EXPECT_EQ(report_->number, 7);
    Trap({"A.cls", "Do"}, [] { throw 5; });
    EXPECT_EQ(report_->description, "Internal error");
}

TEST(ErrorReport, ReadsAsTheWindowShowsIt) {
    const ErrorReport report{"Canvas.cls", "DoSaves", 12, 6, "Overflow"};
    EXPECT_EQ(report.Text(), "Error Detected\nwith this information:\nVersion: " + std::string(Version) +
                                 "\nModule: Canvas.cls\nProcedure: DoSaves\nLine #: 12\nError #: 6\n"
                                 "Error Description: Overflow");
}

}  // namespace
}  // namespace tessaloom
