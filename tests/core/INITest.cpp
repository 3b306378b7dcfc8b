#include "core/INI.h"

#include "platform/profile/ProfileFiles.h"
#include "support/MemoryFileSystem.h"

namespace tessaloom::testing {
namespace {

class INITest : public ::testing::Test {
protected:
    std::string Bytes() { return files_.ReadFile("a.ini").value_or("<missing>"); }

    MemoryFileSystem files_;
    ProfileFiles profile_{files_};
    INI ini_{profile_, "a.ini"};
};

TEST_F(INITest, TreatsAnEmptyValueAsAMissingKey) {
    files_["a.ini"].bytes = "[s]\r\nk=\r\n";
    EXPECT_EQ(ini_.GetKey("s", "k", WriteDefault::No, "x"), "");
    EXPECT_EQ(ini_.GetKey("s", "m", WriteDefault::No, "x"), "");
    EXPECT_EQ(Bytes(), "[s]\r\nk=\r\n");
    EXPECT_EQ(ini_.GetKey("s", "k", WriteDefault::Yes, "1"), "1");
    EXPECT_EQ(ini_.GetKey("s", "m", WriteDefault::Yes, "2"), "2");
    EXPECT_EQ(Bytes(), "[s]\r\nk=1\r\nm=2\r\n");
    EXPECT_EQ(ini_.GetKey("s", "m", WriteDefault::Yes, "3"), "2");
}

TEST_F(INITest, HidesDoubleQuotes) {
    const struct {
        const char *value, *stored, *read;
    } rows[] = {
        {"say \"hi\"", "say &34hi&34", "say \"hi\""},
        {"\"",         "&34",          "\""        },
        {"a &34 b",    "a &34 b",      "a \" b"    }, // kept: the mark itself cannot be stored
        {"&3&344",     "&3&344",       "&3\"4"     },
        {"&&34&3",     "&&34&3",       "&\"&3"     },
        {"'a' & b",    "'a' & b",      "'a' & b"   },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.value);
        ini_.SetKey("s", "k", row.value);
        EXPECT_EQ(Bytes(), std::string("[s]\r\nk=") + row.stored + "\r\n");
        EXPECT_EQ(ini_.GetKey("s", "k", WriteDefault::No, ""), row.read);
    }
    EXPECT_EQ(ini_.GetKey("s", "new", WriteDefault::Yes, "&34"), "\"");
}

TEST_F(INITest, CutsAtTheLimitBeforeItTurnsQuotesBack) {
    ini_.SetKey("s", "k", std::string(252, 'x') + "\"yy");
    EXPECT_EQ(ini_.GetKey("s", "k", WriteDefault::No, ""), std::string(252, 'x') + "&3");
}

}  // namespace
}  // namespace tessaloom::testing
