#include <algorithm>
#include <clocale>
#include <cwctype>

#include "platform/TextEncoding.h"
#include "vbscript/String.h"
#include "vbscript/TimeLimit.h"

namespace tessaloom::vbscript {

namespace {

constexpr bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
constexpr bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

/// Calls `take` with each unit.
template <typename Take>
void ForEachUtf16(std::string_view text, Take&& take) {
    for (std::size_t i = 0; !text.empty(); ++i) {
        if (i % TimeLimit::UnitsBetweenPolls == 0) TimeLimit::Poll();
        const auto byte = static_cast<unsigned char>(text.front());
        if (byte < 0x80) {
            take(char16_t{byte});
            text.remove_prefix(1);
            continue;
        }
        const char32_t code = TakeCharacter(text);
        if (code >= 0x10000) {
            take(static_cast<char16_t>(0xD7C0 + (code >> 10)));
            take(static_cast<char16_t>(0xDC00 + (code & 0x3FF)));
        } else {
            take(static_cast<char16_t>(code));
        }
    }
}

/// The letters of all scripts, whatever the locale of the process. Always part of the C library.
locale_t Letters() {
    static const locale_t letters = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return letters;
}

}  // namespace

std::string Utf8Of(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t code = text[i];
        if (code < 0x80) {
            out += static_cast<char>(code);
            continue;
        }
        if (IsHighSurrogate(code) && i + 1 < text.size() && IsLowSurrogate(text[i + 1]))
            code = 0x10000 + ((code - 0xD800) << 10) + (text[++i] - 0xDC00u);
        else if (IsHighSurrogate(code) || IsLowSurrogate(code))
            code = MalformedCharacter;
        AppendCharacter(out, code);
    }
    return out;
}

std::u16string Utf16Of(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    ForEachUtf16(text, [&](char16_t unit) { out += unit; });
    return out;
}

std::size_t String::UnitsOfUtf8(std::string_view text) {
    std::size_t units = 0;
    ForEachUtf16(text, [&](char16_t) { ++units; });
    return units;
}

void String::WriteUtf16(std::string_view text, char16_t* units) {
    ForEachUtf16(text, [&](char16_t unit) { *units++ = unit; });
}

std::u16string_view TakePiece(std::u16string_view& text) {
    TimeLimit::Poll();
    std::size_t units = std::min(text.size(), TimeLimit::UnitsBetweenPolls);
    if (units < text.size() && IsHighSurrogate(text[units - 1])) ++units;
    const std::u16string_view piece = text.substr(0, units);
    text.remove_prefix(units);
    return piece;
}

char16_t slow::LowerOf(char16_t unit) {
    const locale_t letters = Letters();
    const auto lower = letters ? towlower_l(unit, letters) : unit;
    return lower < 0x10000 && lower >= 0x80 ? static_cast<char16_t>(lower) : unit;
}

char16_t slow::UpperOf(char16_t unit) {
    const locale_t letters = Letters();
    const auto upper = letters ? towupper_l(unit, letters) : unit;
    return upper < 0x10000 && upper >= 0x80 ? static_cast<char16_t>(upper) : unit;
}

bool NameComesBefore(std::u16string_view a, std::u16string_view b) {
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                        [](char16_t x, char16_t y) { return LowerOf(x) < LowerOf(y); });
}

bool SameName(std::u16string_view a, std::u16string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (i % TimeLimit::UnitsBetweenPolls == 0) TimeLimit::Poll();
        if (a[i] != b[i] && LowerOf(a[i]) != LowerOf(b[i])) return false;
    }
    return true;
}

}  // namespace tessaloom::vbscript
