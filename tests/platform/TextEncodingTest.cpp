#include "platform/TextEncoding.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

TEST(TextEncoding, TakesIllFormedUtf8AsWindows1252) {
    const struct {
        const char *bytes, *text;
    } rows[] = {
        {"plain ascii, longer than a word",           "plain ascii, longer than a word"          },
        {"caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80", "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"},
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
    EXPECT_EQ(FoldCase("\xC3\x9C"
                       "BER \xC3\x97 [Z]"),
              "\xC3\xBC"
              "ber \xC3\x97 [z]");
    EXPECT_EQ(FoldCase("\xC5\xA0\xC5\xB8\xE2\x82\xAC"
                       "A"),
              "\xC5\xA1\xC3\xBF\xE2\x82\xAC"
              "a");
    EXPECT_EQ(FoldCase("\xF0\x9F\x98\x80"
                       "B\xC3"),
              "\xF0\x9F\x98\x80"
              "b\xC3");
}

}  // namespace
}  // namespace tessaloom
