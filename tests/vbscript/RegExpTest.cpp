#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "vbscript/Error.h"
#include "vbscript/RegExpMatcher.h"
#include "vbscript/String.h"

namespace tessaloom::vbscript {
namespace {

/// The first match as "[whole|group|group]", an absent group as "-"; the number of the error; "" for no
/// match.
std::string Found(std::u16string_view pattern, std::u16string_view text, std::string_view flags) {
    try {
        const RegExpProgram program =
            CompileRegExp(pattern, flags.find('i') != flags.npos, flags.find('m') != flags.npos);
        const Interruption none;
        RegExpMatcher matcher(program, none);
        RegExpMatcher::Positions positions;
        if (!matcher.Find(text, 0, positions)) return "";
        std::string found;
        for (std::size_t i = 0; i < positions.size(); i += 2) {
            const auto length = static_cast<std::size_t>(positions[i + 1] - positions[i]);
            found += i == 0 ? "[" : "|";
            found +=
                positions[i] < 0 ? "-" : Utf8Of(text.substr(static_cast<std::size_t>(positions[i]), length));
        }
        return found + "]";
    } catch (const RuntimeError& error) {
        return std::to_string(error.number);
    }
}

TEST(RegExp, FindsWhatTheNotationSays) {
    struct Row {
        std::u16string_view pattern, text;
        const char* found;
        const char* flags = "";
    };
    const Row rows[] = {
  // Alternatives, groups, references
        {u"a|ab",                 u"abc",                         "[a]"                        },
        {u"((a)|(ab))((c)|(bc))", u"abc",                         "[abc|a|a|-|bc|-|bc]"        },
        {u"(?:x)(y)",             u"xy",                          "[xy|y]"                     },
        {u"(a)\\1\\2",            u"aa\2",                        "[aa\2|a]"                   },
        {u"\\1(a)",               u"a",                           "[a|a]"                      },
        {u"(A)\\1",               u"aA",                          "[aA|a]",                      "i"},
        {u"(z)((a+)?(b+)?(c))*",                       u"zaacbbbcac",                                "[zaacbbbcac|z|ac|a|bbb|c]"                         },
 // Counts
        {u"a{2}",                       u"aaa",                                               "[aa]"                      },
        {u"a{2,}?",                       u"aaaa",                                             "[aa]"                      },
        {u"(ab){1,2}c",                       u"abababc",                                         "[ababc|ab]"               },
        {u"(ab){2}?",                       u"ababab",                                           "[abab|ab]"                         },
        {u"(a*)*b",                       u"aab",                                             "[aab|aa]"                    },
        {u"(a*)+",                       u"b",                                              "[|]"                            },
        {u"(?:a?){3}b",                       u"aab",                                         "[aab]"             },
        {u"(?:a|b)+?c",                       u"abac",                                         "[abac]"                           },
        {u"<.*?>",                       u"<a><b>",                                              "[<a>]"                },
        {u"a.*c",                       u"abcbc\nc",                                               "[abcbc]"                          },
        {u"x{,3}",                       u"x{,3}",                                              "[x{,3}]"                  },
        {u"a{0}b",                       u"ab",                                              "[b]"                             },
        {u"a{4294967296}",                       u"aaa",                                      ""         },
 // Classes and escapes
        {u"[^]a]",                       u"]ab",                                              "[b]"                                     },
        {u"[]a]+",                       u"x]a",                                              "[]a]"         },
        {u"[a-c-e]+",                       u"xa-e",                                           "[a-e]"                                 },
        {u"[\\w-.]+",                       u" a-b.c",                                           "[a-b.c]"       },
        {u"[\\d\\s]+",                       u"a1 \t2b",                                          "[1 \t2]"                               },
        {u"[^\\D5]",                       u"a56",                                            "[6]"             },
        {u"[\\b]",                       u"a\bc",                                              "[\b]"                                },
        {u"[K-M]+",                       u"JklMN",                                             "[klM]",            "i"},
        {u"[^a]",                    u"A",                                                  "",                                                              "i"},
        {u"\\x41\\u0042\\103\\cJ",                     u"ABC\n","[ABC\n]"},
        {u"\\xZ\\.\\/",u"xZ./",                  "[xZ./]"                                                                                },
        {u"\u00c4+",                      u"\u00e4\u00c4",                           "[\u00e4\u00c4]","i"},
        {u"[\u0400-\u04ff]+",u"ab\u0416\u0436","[\u0416\u0436]"                         },
        {u"\\u20AC\\S",     u"\u20ac\u20ac",                                "[\u20ac\u20ac]"                                                                      },
 // Places
        {u"^b",           u"a\nb",                      ""   },
        {u"^b$",                   u"a\r\nb\r\nc",                                "[b]",                                      "m"},
        {u"a$",                  u"a\n",                ""        },
        {u"\\bfoo\\b",                       u"food foo",                                                 "[foo]"                                                      },
        {u"\\Boo",                       u"oo foo",                                          "[oo]"                             },
        {u"(?=(a+))a*b\\1",                       u"baaabac",                                              "[aba|a]"},
        {u"(.*?)a(?!(a+)b\\2c)\\2(.*)",                       u"baaabaac",                                     "[baaabaac|ba|-|abaac]"    },
        {u"q(?!u)",                       u"quiq",                         "[q]"                               },
        {u"(?:(?=a)a)+",                       u"aab",                                             "[aa]"                                        },
        {u"",                       u"abc",                                        "[]"         },
 // Mistakes
        {u"[a",                       u"",                                                   "5019"           },
        {u"[]",                       u"",                                                 "5019"                                           },
        {u"(a",                       u"",                                                 "5020"                                         },
        {u"a)",                       u"",                                                 "5017"         },
        {u"\\",                       u"",                                                 "5017"           },
        {u"*a",                       u"",                                                 "5018"                                           },
        {u"a**",                       u"",                                                 "5018"                                         },
        {u"^+",                       u"",                                                "5018"        },
        {u"(?<a)",                       u"",                                                 "5018"           },
        {u"a{3,2}",                       u"",                                              "5017"                                         },
        {u"[z-a]",                       u"",                                             "5021"                                     },
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(Utf8Of(row.pattern));
        EXPECT_EQ(Found(row.pattern, row.text, row.flags), row.found);
    }
}

TEST(RegExp, BearsHostilePatternsAndLongTexts) {
    const std::u16string many(1'000'000, u'a');
    EXPECT_EQ(Found(u"^(?:a|b)*$", many, "").size(), many.size() + 2);
    EXPECT_EQ(Found(u"(?:a+)+b", many.substr(0, 20), ""), "");
    EXPECT_EQ(Found(std::u16string(10'000, u'('), u"", ""), "28");
    EXPECT_EQ(Found(many, u"", ""), "7");
    std::u16string deep;
    for (int i = 0; i < 400; ++i) deep = u"(?:" + deep + u"a*)*";
    EXPECT_EQ(Found(deep, u"aaaa", ""), "[aaaa]");

    const RegExpProgram program = CompileRegExp(u"(a|aa)*c", false, false);
    const Interruption timeIsUp = [] { throw RuntimeError(18); };
    RegExpMatcher matcher(program, timeIsUp);
    RegExpMatcher::Positions positions;
    EXPECT_THROW(matcher.Find(many.substr(0, 5'000), 0, positions), RuntimeError);
}

}  // namespace
}  // namespace tessaloom::vbscript
