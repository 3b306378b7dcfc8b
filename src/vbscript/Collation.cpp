#include <algorithm>
#include <compare>

#include "vbscript/String.h"
#include "vbscript/TimeLimit.h"

namespace tessaloom::vbscript {

namespace {

/// Signs in their order before all digits and letters.
constexpr std::u16string_view Signs = u" '-!\"#$%&()*,./:;?@[\\]^_`{|}~+<=>";

constexpr char16_t FirstAccented = 0xE0, FirstExtended = 0x100, BehindExtended = 0x180;

/// The plain letters of U+00E0 .. U+00FF and U+0100 .. U+017F; blank: no letter.
constexpr std::u16string_view AccentedLetters = u"aaaaaaaceeeeiiiidnooooo ouuuuyty";
constexpr std::u16string_view ExtendedLetters =
    u"aaaaaaccccccccddddeeeeeeeeeegggggggghhhhiiiiiiiiiiiijjkkkllllllllllnnnnnnnnnoooooooorrrrrrssssssssttttt"
    u"t"
    u"uuuuuuuuuuuuwwyyyzzzzzzs";

static_assert(AccentedLetters.size() == FirstExtended - FirstAccented);
static_assert(ExtendedLetters.size() == BehindExtended - FirstExtended);

/// The letter without its accent; `unit` is in lower case.
char16_t PlainLetter(char16_t unit) {
    char16_t plain = unit == u'ß' ? u's' : unit;
    if (unit >= FirstExtended && unit < BehindExtended) plain = ExtendedLetters[unit - FirstExtended];
    if (unit >= FirstAccented && unit < FirstExtended) plain = AccentedLetters[unit - FirstAccented];
    return plain == u' ' ? unit : plain;
}

/// Where a unit stands in the order: signs, digits, letters with their accented forms, the other scripts.
int PlaceOf(char16_t lower) {
    if (const auto sign = Signs.find(lower); sign != Signs.npos) return static_cast<int>(sign) - 0x100;
    return PlainLetter(lower);
}

}  // namespace

int CompareText(std::u16string_view a, std::u16string_view b, bool ignoreCase) {
    const std::size_t common = std::min(a.size(), b.size());
    if (!ignoreCase) {
        for (std::size_t begin = 0; begin < common; begin += TimeLimit::UnitsBetweenPolls) {
            TimeLimit::Poll();
            const std::size_t count = std::min(common - begin, TimeLimit::UnitsBetweenPolls);
            const int order = std::char_traits<char16_t>::compare(a.data() + begin, b.data() + begin, count);
            if (order != 0) return order > 0 ? 1 : -1;
        }
        return (a.size() > b.size()) - (a.size() < b.size());
    }
    // accents decide only between texts that are the same without them
    int accents = 0;
    for (std::size_t i = 0; i < common;) {
        TimeLimit::Poll();
        for (const std::size_t end = std::min(common, i + TimeLimit::UnitsBetweenPolls); i < end; ++i) {
            if (a[i] == b[i]) continue;
            const char16_t x = LowerOf(a[i]), y = LowerOf(b[i]);
            if (x == y) continue;
            const int first = PlaceOf(x), second = PlaceOf(y);
            if (first != second) return first < second ? -1 : 1;
            if (accents == 0) accents = x < y ? -1 : 1;
        }
    }
    return a.size() != b.size() ? (a.size() < b.size() ? -1 : 1) : accents;
}

}  // namespace tessaloom::vbscript
