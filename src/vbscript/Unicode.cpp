#include <algorithm>
#include <clocale>
#include <cwctype>

#include "vbscript/String.h"

namespace tessaloom::vbscript {

namespace {

constexpr char32_t Malformed = 0xFFFD;

constexpr bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
constexpr bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

void AppendUtf8(std::string& out, char32_t code) {
    const auto add = [&out](char32_t byte) { out += static_cast<char>(byte); };
    if (code < 0x80) return add(code);
    if (code < 0x800) {
        add(0xC0 | code >> 6);
    } else {
        if (code < 0x10000) {
            add(0xE0 | code >> 12);
        } else {
            add(0xF0 | code >> 18);
            add(0x80 | (code >> 12 & 0x3F));
        }
        add(0x80 | (code >> 6 & 0x3F));
    }
    add(0x80 | (code & 0x3F));
}

void AppendUtf16(std::u16string& out, char32_t code) {
    if (code < 0x10000) {
        out += static_cast<char16_t>(code);
        return;
    }
    out += static_cast<char16_t>(0xD7C0 + (code >> 10));
    out += static_cast<char16_t>(0xDC00 + (code & 0x3FF));
}

/// Takes one code point off the front; a malformed byte counts alone.
char32_t TakeUtf8(std::string_view& text) {
    const auto byte = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const char32_t first = byte(0);
    const std::size_t length = first < 0x80 ? 1 : first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    char32_t code = length < 2 ? first : first & (0x7Fu >> length);
    bool good = length != 0 && length <= text.size() && first < 0xF5;
    for (std::size_t i = 1; good && i < length; ++i) {
        good = (byte(i) & 0xC0) == 0x80;
        code = code << 6 | (byte(i) & 0x3F);
    }
    if (length == 3 && (code < 0x800 || (code >= 0xD800 && code < 0xE000))) good = false;
    if (length == 4 && (code < 0x10000 || code > 0x10FFFF)) good = false;
    text.remove_prefix(good ? length : 1);
    return good ? code : Malformed;
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
            code = Malformed;
        AppendUtf8(out, code);
    }
    return out;
}

std::u16string Utf16Of(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    while (!text.empty()) AppendUtf16(out, TakeUtf8(text));
    return out;
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
    for (std::size_t i = 0; i < a.size(); ++i)
        if (a[i] != b[i] && LowerOf(a[i]) != LowerOf(b[i])) return false;
    return true;
}

}  // namespace tessaloom::vbscript
