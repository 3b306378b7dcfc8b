#pragma once

#include <algorithm>
#include <string>
#include <string_view>

/// Tests and small changes of text that depend on no locale. Bytes beyond ASCII are left alone.
namespace tessaloom::ascii {

inline constexpr std::string_view Blanks = " \t";
inline constexpr std::string_view WhiteSpace = " \t\r\n";

constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
constexpr char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }
constexpr char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c; }
constexpr bool IsLetter(char c) { return Lower(c) >= 'a' && Lower(c) <= 'z'; }

/// Equal but for the case of the letters a .. z.
constexpr bool SameText(std::string_view a, std::string_view b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return Lower(x) == Lower(y); });
}

constexpr bool StartsWithText(std::string_view text, std::string_view start) {
    return text.size() >= start.size() && SameText(text.substr(0, start.size()), start);
}

constexpr bool EndsWithText(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && SameText(text.substr(text.size() - end.size()), end);
}

inline std::string LowerText(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) c = Lower(c);
    return lower;
}

/// `text` without those of `characters` that stand around it.
constexpr std::string_view Trimmed(std::string_view text, std::string_view characters = " ") {
    const std::size_t first = text.find_first_not_of(characters);
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(characters) - first + 1);
}

}  // namespace tessaloom::ascii
