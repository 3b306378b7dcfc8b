#include "core/Log.h"

#include "support/Tsv.h"

namespace tessaloom::testing {
namespace {

TEST(MaskSecrets, HidesUserPasswordAndQueryOfEveryAddress) {
    for (const TsvRow& row : ReadTsv(TEST_DATA "/vectors/masked_addresses.tsv"))
        EXPECT_EQ(MaskSecrets(row[0]), row[1]);
}

TEST(Log, WritesOneLineAnEvent) {
    std::vector<std::string> lines;
    const LogSink before = SetLogSink([&](LogLevel level, std::string_view line) {
        lines.push_back(std::string(NameOf(level)) + ": " + std::string(line));
    });
    Log(LogLevel::Error, "first\r\nsecond\nthird\x1B[31m\n");
    Log(LogLevel::Debug, "http://a:b@c");
    SetLogSink(before);
    EXPECT_EQ(lines, (std::vector<std::string>{"err: first | second | third?[31m", "debug: http://***@c"}));
}

TEST(LogLevel, IsFoundByItsName) {
    for (int i = 0; i < 8; ++i) {
        const auto level = static_cast<LogLevel>(i);
        EXPECT_EQ(LogLevelNamed(NameOf(level)), level);
    }
    EXPECT_EQ(LogLevelNamed("loud"), std::nullopt);
}

}  // namespace
}  // namespace tessaloom::testing
