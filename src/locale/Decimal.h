#pragma once

#include <array>
#include <string>

namespace tessaloom {

/// A number in a few decimal digits: 0.d1d2d3... times ten to the `exponent`, without trailing zeros.
///
/// Zero has no digits. Shared by the plain texts of numbers and by the pictures, which round again on these
/// digits.
struct Decimal {
    static constexpr int MaxDigits = 15;

    std::array<char, MaxDigits + 3> digits{};  ///< As characters '0' .. '9'.
    int count = 0;                             ///< 0 .. MaxDigits
    int exponent = 0;                          ///< Digits before the decimal point; below 0 zeros follow it.
    bool negative = false;

    /// The nearest decimal of 15 significant digits. `value` is finite.
    static Decimal Of(double value);

    /// The nearest decimal of 7 significant digits. `value` is finite.
    static Decimal Of(float value);

    bool IsZero() const { return count == 0; }

    /// The digit at a place: 0 for the ones, 1 for the tens, -1 for the tenths.
    char DigitAt(int place) const {
        const int index = exponent - 1 - place;
        return index >= 0 && index < count ? digits[static_cast<std::size_t>(index)] : '0';
    }

    /// Rounds to `decimals` digits after the point (below 0: before it), a half away from zero.
    void RoundTo(int decimals);

private:
    void TrimZeros();
};

/// The text of what has no digits: 1.#INF, -1.#INF, 1.#QNAN.
std::string TextOfNonFinite(double value);

}  // namespace tessaloom
