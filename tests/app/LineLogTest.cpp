#include "app/LineLog.h"

#include "support/Testing.h"

namespace tessaloom::testing {
namespace {

using namespace std::chrono_literals;

class LineLogTest : public ::testing::Test {
protected:
    LineLog Make(LogLevel level) {
        return LineLog(
            level, [this](const std::string& line) { lines_.push_back(line.substr(20)); },
            [this] { return now_; });
    }

    std::chrono::system_clock::time_point now_{1'700'000'000s};
    std::vector<std::string> lines_;  // without their time
};

TEST_F(LineLogTest, CountsWhatRepeatsWithinTenMinutes) {
    {
        LineLog log = Make(LogLevel::Info);
        for (int second = 0; second < 700; ++second, now_ += 1s) {
            log.Write(LogLevel::Warning, "camera lost");
            if (second == 5) log.Write(LogLevel::Info, "saved");
        }
    }
    EXPECT_EQ(lines_, (std::vector<std::string>{"warning: camera lost", "info: saved",
                                                "warning: camera lost (600 times)",
                                                "warning: camera lost (99 times)"}));
}

TEST_F(LineLogTest, DropsWhatIsLessPressingThanItsLevel) {
    LineLog log = Make(LogLevel::Error);
    log.Write(LogLevel::Warning, "no");
    log.Write(LogLevel::Error, "yes");
    log.Write(LogLevel::Critical, "also");
    EXPECT_EQ(lines_, (std::vector<std::string>{"err: yes", "crit: also"}));
}

TEST_F(LineLogTest, StaysBoundedAndLosesNoCount) {
    LineLog log = Make(LogLevel::Info);
    log.Write(LogLevel::Info, "first");
    log.Write(LogLevel::Info, "first");
    for (int i = 0; i < 1000; ++i) log.Write(LogLevel::Info, std::to_string(i));
    EXPECT_EQ(lines_.size(), 1002U);
    EXPECT_EQ(std::count(lines_.begin(), lines_.end(), "info: first"), 2);
}

}  // namespace
}  // namespace tessaloom::testing
