#include "locale/Decimal.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace tessaloom {

namespace {

/// Takes `value` for `whole` / 10^`decimals`, which the caller has made sure of.
Decimal FromWhole(std::int64_t whole, int decimals) {
    Decimal result;
    result.negative = whole < 0;
    const auto begin = result.digits.data();
    const auto end = std::to_chars(begin, begin + result.digits.size(), whole < 0 ? -whole : whole).ptr;
    result.count = static_cast<int>(end - begin);
    result.exponent = result.count - decimals;
    return result;
}

/// Reads what to_chars wrote as "-d.ddde-dd".
template <typename Real>
Decimal FromScientific(Real value, int significantDigits) {
    std::array<char, 32> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                   std::chars_format::scientific, significantDigits - 1)
                         .ptr;
    Decimal result;
    const char* at = text.data();
    if (*at == '-') ++at, result.negative = value != 0;
    for (; *at != 'e'; ++at)
        if (*at != '.') result.digits[static_cast<std::size_t>(result.count++)] = *at;
    if (*++at == '+') ++at;
    std::from_chars(at, end, result.exponent);
    ++result.exponent;
    return result;
}

}  // namespace

Decimal Decimal::Of(double value) {
    // Most settings have few decimals. A double that is the nearest to a decimal of up to 15 digits has that
    // decimal for its text, and the division below is correctly rounded, so this equals the general way.
    constexpr int FewDecimals = 4;
    constexpr double Scale = 1e4, Limit = 1e10;
    const double scaled = std::nearbyint(value * Scale);
    if (std::abs(value) < Limit && value != 0 && scaled / Scale == value) {
        Decimal result = FromWhole(static_cast<std::int64_t>(scaled), FewDecimals);
        result.TrimZeros();
        return result;
    }
    Decimal result = FromScientific(value, MaxDigits);
    result.TrimZeros();
    return result;
}

Decimal Decimal::Of(float value) {
    Decimal result = FromScientific(value, 7);
    result.TrimZeros();
    return result;
}

void Decimal::RoundTo(int decimals) {
    const int kept = exponent + decimals;
    if (kept >= count) return;
    const bool up = kept >= 0 && digits[static_cast<std::size_t>(kept)] >= '5';
    count = std::max(kept, 0);
    if (up) {
        int i = count - 1;
        while (i >= 0 && digits[static_cast<std::size_t>(i)] == '9') --i;
        if (i >= 0) {
            ++digits[static_cast<std::size_t>(i)];
            count = i + 1;
        } else {
            digits[0] = '1';
            count = 1;
            ++exponent;
        }
    }
    TrimZeros();
}

void Decimal::TrimZeros() {
    while (count > 0 && digits[static_cast<std::size_t>(count - 1)] == '0') --count;
    if (count == 0) exponent = 0;
}

std::string TextOfNonFinite(double value) {
    if (std::isnan(value)) return "1.#QNAN";
    return value < 0 ? "-1.#INF" : "1.#INF";
}

}  // namespace tessaloom
