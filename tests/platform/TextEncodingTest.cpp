#include "platform/TextEncoding.h"

#include "support/Testing.h"

namespace tessaloom::testing {
namespace {

TEST(TextEncoding, TakesIllFormedUtf8AsWindows1252) {
    const struct {
        const char *bytes, *text;
    } rows[] = {
        {"plain ascii, longer than a word",           "plain ascii, longer than a word"          },
        {"caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80", "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"},
        {"\xF4\x8F\xBF\xBF",                          "\xF4\x8F\xBF\xBF"                         }, // the last character
        {"caf\xE9",                                   "caf\xC3\xA9"                              },
        {"\x80 \x9F \xA0 \xFF",                       "\xE2\x82\xAC \xC5\xB8 \xC2\xA0 \xC3\xBF"  },
        {"\x81\x8D",                                  "\xC2\x81\xC2\x8D"                         },
        {"cut \xC3",                                  "cut \xC3\x83"                             },
        {"\xC0\xAF",                                  "\xC3\x80\xC2\xAF"                         }, // overlong
        {"\xED\xA0\x80",                              "\xC3\xAD\xC2\xA0\xE2\x82\xAC"             }, // a surrogate
        {"\xF4\x90\x80\x80",                          "\xC3\xB4\xC2\x90\xE2\x82\xAC\xE2\x82\xAC" }, // beyond the last character
    };
    for (const auto& row : rows) EXPECT_EQ(ToUtf8(row.bytes), row.text);
}

TEST(TextEncoding, CutsBetweenCharacters) {
    EXPECT_EQ(FirstCharacters("\xC3\xA9\xE2\x82\xACx", 2), "\xC3\xA9\xE2\x82\xAC");
    EXPECT_EQ(FirstCharacters("\xC3\xA9\xC3\xA9", 2), "\xC3\xA9\xC3\xA9");
    EXPECT_EQ(FirstCharacters("abc", 0), "");
}

TEST(TextEncoding, FoldsLettersOnly) {
    EXPECT_EQ(FoldCase("\u00DC BER \u00D7 [Z]"), "\u00FC ber \u00D7 [z]");
    EXPECT_EQ(FoldCase("\u0160\u0178\u20AC A"), "\u0161\u00FF\u20AC a");
    EXPECT_EQ(FoldCase("\U0001F600 B\xC3"), "\U0001F600 b\xC3");
}

}  // namespace
}  // namespace tessaloom::testing
