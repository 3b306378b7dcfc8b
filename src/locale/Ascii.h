#pragma once

#include <algorithm>
#include <string_view>

/// Character tests that do not depend on any locale.
namespace tessaloom::ascii {

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

}  // namespace tessaloom::ascii
