#include "support/Tsv.h"
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
        RegExpMatcher matcher(program);
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
    for (const testing::TsvRow& row : testing::ReadTsv(TEST_DATA "/vectors/vbscript_regexp.tsv")) {
        SCOPED_TRACE(row[0]);
        EXPECT_EQ(Found(Utf16Of(row[0]), Utf16Of(row[1]), row[3]), row[2]);
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
}

}  // namespace
}  // namespace tessaloom::vbscript
