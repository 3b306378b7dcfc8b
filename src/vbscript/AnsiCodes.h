#pragma once

#include <algorithm>
#include <array>

namespace tessaloom::vbscript {

/// What Chr and Asc mean by the codes 128 .. 159 (Windows-1252); all others are the same in Unicode.
inline constexpr std::array<char16_t, 32> AnsiUnits = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

/// `code`: 0 .. 255.
constexpr char16_t UnitOfAnsi(int code) {
    return code >= 128 && code < 160 ? AnsiUnits[static_cast<std::size_t>(code - 128)]
                                     : static_cast<char16_t>(code);
}

/// 0 .. 255; "?" for what the code page lacks.
constexpr int AnsiOfUnit(char16_t unit) {
    const auto found = std::find(AnsiUnits.begin(), AnsiUnits.end(), unit);
    if (found != AnsiUnits.end()) return 128 + static_cast<int>(found - AnsiUnits.begin());
    return unit < 256 ? unit : '?';
}

}  // namespace tessaloom::vbscript
