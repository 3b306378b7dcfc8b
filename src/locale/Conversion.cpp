#include "locale/Conversion.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <type_traits>
#include <utility>

#include "platform/Ascii.h"

namespace tessaloom {

namespace {

constexpr int MaxExponent = 100000;  ///< Exponents are read up to here; what is larger changes no result.

constexpr std::array ExactPowers = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                    1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// The significant digits of a decimal text. Beyond the capacity they only count as places.
struct Digits {
    std::array<char, 64> text;  // not initialised: only the first `count` are read
    std::size_t count = 0;
    int scale = 0;     ///< The value is `text` times ten to this.
    bool any = false;  ///< A digit was seen, if only a leading zero.

    void Add(char digit, bool afterPoint) {
        any = true;
        if (count == text.size()) {
            scale += afterPoint ? 0 : 1;
            return;
        }
        if (count > 0 || digit != '0') text[count++] = digit;
        scale -= afterPoint ? 1 : 0;
    }
};

/// A number as it was written, before a type is asked for.
struct ParsedNumber {
    double value = 0;
    std::uint64_t bits = 0;  ///< The value of a hexadecimal or octal number.
    bool isBits = false;
};

/// Ten to `exponent` (not negative) by factors of 1E8; the order decides the last bits of the result.
double PowerOfTen(int exponent) {
    double power = 1;
    for (; exponent >= 8 && std::isfinite(power); exponent -= 8) power *= 1e8;
    return power * ExactPowers[static_cast<std::size_t>(exponent % 8)];
}

/// Up to 15 digits and a small scale: both factors are exact, so one operation rounds correctly.
double ShortValueOf(const Digits& digits) {
    std::int64_t whole = 0;
    for (std::size_t i = 0; i < digits.count; ++i) whole = whole * 10 + (digits.text[i] - '0');
    const double power = ExactPowers[static_cast<std::size_t>(std::abs(digits.scale))];
    return digits.scale < 0 ? static_cast<double>(whole) / power : static_cast<double>(whole) * power;
}

/// The nearest double.
double NearestValueOf(const Digits& digits) {
    std::array<char, 96> text;
    char* end = std::copy_n(digits.text.data(), digits.count, text.data());
    *end++ = 'e';
    end = std::to_chars(end, text.data() + text.size(), digits.scale).ptr;
    double value = 0;
    if (std::from_chars(text.data(), end, value).ec == std::errc()) return value;
    const bool tooLarge = digits.scale + static_cast<int>(digits.count) > 0;
    return tooLarge ? std::numeric_limits<double>::infinity() : 0;
}

/// The digits summed one by one, which may miss the nearest double by its last bits.
double SummedValueOf(const Digits& digits) {
    double value = 0;
    for (std::size_t i = 0; i < digits.count; ++i) value = value * 10 + (digits.text[i] - '0');
    if (digits.scale >= 0) return value * PowerOfTen(digits.scale);
    // two steps below the smallest normal number, whose inverse would not be finite
    const int first = std::min(-digits.scale, 300);
    return value / PowerOfTen(first) / PowerOfTen(std::min(-digits.scale - first, 400));
}

/// Long numbers are rounded correctly only where the user writes a decimal point; kept: the same text has
/// always given the same bits.
double ValueOf(const Digits& digits, bool pointIsNeutral) {
    if (digits.count == 0) return 0;
    if (digits.count <= 15 && std::abs(digits.scale) < static_cast<int>(ExactPowers.size()))
        return ShortValueOf(digits);
    return pointIsNeutral ? NearestValueOf(digits) : SummedValueOf(digits);
}

/// Reads one number text from front to end.
class NumberReader {
public:
    NumberReader(std::string_view text, const UserLocale& user) : rest_(text), user_(user) {}

    std::optional<ParsedNumber> Read() {
        SkipBlanks();
        if (rest_.size() > 1 && rest_[0] == '&') return ReadBits();
        if (!ReadPrefix() || !ReadMantissa() || !ReadExponent() || !ReadSuffix()) return std::nullopt;
        ParsedNumber number;
        number.value = ValueOf(digits_, user_.decimal == ".");
        if (negative_) number.value = -number.value;
        return number;
    }

private:
    void SkipBlanks() {
        while (!rest_.empty() && ascii::IsBlank(rest_.front())) rest_.remove_prefix(1);
    }

    bool Take(std::string_view token) {
        if (token.empty() || !rest_.starts_with(token)) return false;
        rest_.remove_prefix(token.size());
        return true;
    }

    /// A blank that does not break a line, of either width, groups wherever one of the two (or a blank) does.
    bool TakeGrouping() {
        static constexpr std::string_view Wide = "\u00a0", Narrow = "\u202f";
        if (Take(user_.grouping)) return true;
        if (user_.grouping != Wide && user_.grouping != Narrow) return false;
        if (Take(Wide) || Take(Narrow)) return true;
        return rest_.size() > 1 && ascii::IsDigit(rest_[1]) && Take(" ");
    }

    bool TakeSign() {
        if (signed_ || rest_.empty() || (rest_.front() != '-' && rest_.front() != '+')) return false;
        signed_ = true;
        negative_ = rest_.front() == '-';
        rest_.remove_prefix(1);
        return true;
    }

    bool TakeCurrency() {
        if (currency_ || !Take(user_.currency)) return false;
        return currency_ = true;
    }

    bool TakeOpening() {
        if (signed_ || !Take("(")) return false;
        return signed_ = negative_ = parenthesis_ = true;
    }

    /// Signs, the currency sign and an opening parenthesis, each once; then a digit or the point must follow.
    bool ReadPrefix() {
        while (!rest_.empty() && !ascii::IsDigit(rest_.front())) {
            if (rest_.starts_with(user_.decimal)) return true;
            if (!TakeSign() && !TakeCurrency() && !TakeOpening()) return false;
            SkipBlanks();
        }
        return !rest_.empty();
    }

    bool ReadMantissa() {
        for (bool afterPoint = false; !rest_.empty();) {
            if (ascii::IsDigit(rest_.front())) {
                digits_.Add(rest_.front(), afterPoint);
                rest_.remove_prefix(1);
            } else if (!afterPoint && Take(user_.decimal)) {
                afterPoint = true;
            } else if (afterPoint || !TakeGrouping()) {
                break;
            }
        }
        return digits_.any;
    }

    bool ReadExponent() {
        if (rest_.empty()) return true;
        const char mark = ascii::Lower(rest_.front());
        if (mark != 'e' && mark != 'd') return true;
        rest_.remove_prefix(1);
        const bool minus = !rest_.empty() && rest_.front() == '-';
        if (minus || (!rest_.empty() && rest_.front() == '+')) rest_.remove_prefix(1);
        if (rest_.empty() || !ascii::IsDigit(rest_.front())) return false;
        int exponent = 0;
        for (; !rest_.empty() && ascii::IsDigit(rest_.front()); rest_.remove_prefix(1))
            exponent = std::min(exponent * 10 + (rest_.front() - '0'), MaxExponent);
        digits_.scale += minus ? -exponent : exponent;
        return true;
    }

    bool ReadSuffix() {
        bool closed = !parenthesis_;
        for (SkipBlanks(); !rest_.empty(); SkipBlanks()) {
            if (!closed && Take(")"))
                closed = true;
            else if (!TakeSign() && !TakeCurrency())
                return false;
        }
        return closed;
    }

    /// "&H" or "&O" and at most 64 bits of digits.
    std::optional<ParsedNumber> ReadBits() {
        const char mark = ascii::Lower(rest_[1]);
        const int base = mark == 'h' ? 16 : mark == 'o' ? 8 : 0;
        if (base == 0) return std::nullopt;
        rest_.remove_prefix(2);
        ParsedNumber number;
        const char* const end = rest_.data() + rest_.size();
        const auto result = std::from_chars(rest_.data(), end, number.bits, base);
        if (result.ptr == rest_.data()) return std::nullopt;
        const bool tooLarge = result.ec == std::errc::result_out_of_range;
        rest_.remove_prefix(static_cast<std::size_t>(result.ptr - rest_.data()));
        SkipBlanks();
        if (!rest_.empty()) return std::nullopt;
        number.isBits = !tooLarge;
        number.value = tooLarge ? std::numeric_limits<double>::infinity() : static_cast<double>(number.bits);
        return number;
    }

    std::string_view rest_;
    const UserLocale& user_;
    Digits digits_;
    bool signed_ = false;
    bool negative_ = false;
    bool currency_ = false;
    bool parenthesis_ = false;
};

/// Whole numbers without anything else, as files mostly hold them: they mean the same in every locale.
std::optional<int> ReadPlainWhole(std::string_view text) {
    int value = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
    return value;
}

/// Rounds to Target; hexadecimal numbers that fit its bits keep their bit pattern.
template <typename Target>
Converted<Target> WholeFromText(std::string_view text, const UserLocale& user) {
    using Bits = std::make_unsigned_t<Target>;
    if (const auto plain = ReadPlainWhole(text); plain && std::in_range<Target>(*plain))
        return static_cast<Target>(*plain);
    const auto number = NumberReader(text, user).Read();
    if (!number) return Fault::TypeMismatch;
    if (number->isBits && number->bits <= std::numeric_limits<Bits>::max())
        return static_cast<Target>(static_cast<Bits>(number->bits));
    if constexpr (sizeof(Target) == sizeof(std::int16_t))
        return IntegerFromDouble(number->value);
    else
        return LongFromDouble(number->value);
}

template <typename Target>
Converted<Target> WholeFromDouble(double value) {
    const double rounded = std::nearbyint(value);
    if (!(rounded >= std::numeric_limits<Target>::min() && rounded <= std::numeric_limits<Target>::max()))
        return Fault::Overflow;
    return static_cast<Target>(rounded);
}

}  // namespace

Converted<double> DoubleFromText(std::string_view text, const UserLocale& user) {
    if (const auto plain = ReadPlainWhole(text)) return *plain;
    const auto number = NumberReader(text, user).Read();
    if (!number) return Fault::TypeMismatch;
    if (!std::isfinite(number->value)) return Fault::Overflow;
    return number->value;
}

Converted<float> SingleFromText(std::string_view text, const UserLocale& user) {
    const auto number = DoubleFromText(text, user);
    return number ? SingleFromDouble(number.value) : Converted<float>(number.fault);
}

Converted<int> LongFromText(std::string_view text, const UserLocale& user) {
    return WholeFromText<int>(text, user);
}

Converted<std::int16_t> IntegerFromText(std::string_view text, const UserLocale& user) {
    return WholeFromText<std::int16_t>(text, user);
}

Converted<bool> BooleanFromText(std::string_view text, const UserLocale& user) {
    if (ascii::SameText(text, "True") || ascii::SameText(text, "#TRUE#")) return true;
    if (ascii::SameText(text, "False") || ascii::SameText(text, "#FALSE#")) return false;
    const auto number = DoubleFromText(text, user);
    return number ? Converted<bool>(number.value != 0) : Converted<bool>(number.fault);
}

Converted<std::int16_t> IntegerFromDouble(double value) { return WholeFromDouble<std::int16_t>(value); }

Converted<int> LongFromDouble(double value) { return WholeFromDouble<int>(value); }

Converted<float> SingleFromDouble(double value) {
    if (!(std::abs(value) <= std::numeric_limits<float>::max())) return Fault::Overflow;
    return static_cast<float>(value);
}

}  // namespace tessaloom
