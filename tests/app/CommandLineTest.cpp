#include "app/CommandLine.h"

#include "support/Testing.h"

namespace tessaloom::testing {
namespace {

using Arguments = std::vector<const char*>;

CommandLine Parsed(const Arguments& arguments) {
    const auto result = ParseCommandLine(arguments);
    if (const auto* wrong = std::get_if<std::string>(&result)) {
        ADD_FAILURE() << *wrong;
        return {};
    }
    return std::get<CommandLine>(result);
}

TEST(CommandLine, TakesValuesAsTheNextArgumentOrBehindAnEqualsSign) {
    const CommandLine line =
        Parsed({"--headless", "--home", "a dir", "--portfolio=x=y.por", "--log-level", "debug"});
    EXPECT_TRUE(line.headless);
    EXPECT_EQ(line.action, CommandLine::Action::Run);
    EXPECT_EQ(line.home, "a dir");
    EXPECT_EQ(line.portfolio, "x=y.por");
    EXPECT_EQ(line.logLevel, LogLevel::Debug);
}

TEST(CommandLine, KnowsItsActions) {
    using Action = CommandLine::Action;
    EXPECT_EQ(Parsed({"--render", "a.can", "--out", "b.jpg"}).action, Action::Render);
    EXPECT_EQ(Parsed({"--check", "a.por"}).check, "a.por");
    EXPECT_EQ(Parsed({"--list-devices"}).action, Action::ListDevices);
}

TEST(CommandLine, RefusesWhatItCannotDo) {
    const struct {
        Arguments arguments;
        const char* reason;
    } rows[] = {
        {{"--nonsense"},                               "unknown option \"--nonsense\""       },
        {{"file.por"},                                 "unknown option \"file.por\""         },
        {{"--home"},                                   "--home needs a value: DIR"           },
        {{"--home="},                                  "--home needs a value: DIR"           },
        {{"--headless=yes"},                           "--headless takes no value"           },
        {{"--log-level", "loud"},                      "unknown log level \"loud\""          },
        {{"--render", "a.can"},                        "--render needs --out"                },
        {{"--out", "a.jpg"},                           "--out needs --render"                },
        {{"--version", "--help"},                      "--help excludes the action before it"},
        {{"--check", "a.por", "--portfolio", "b.por"}, "--portfolio is for running only"     },
    };
    for (const auto& row : rows) {
        const auto result = ParseCommandLine(row.arguments);
        ASSERT_TRUE(std::holds_alternative<std::string>(result)) << row.reason;
        EXPECT_EQ(std::get<std::string>(result), row.reason);
    }
}

}  // namespace
}  // namespace tessaloom::testing
