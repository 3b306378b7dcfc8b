#include <cmath>

#include "locale/Conversion.h"
#include "locale/Decimal.h"
#include "locale/UserPicture.h"

namespace tessaloom {

namespace {

void AppendFixed(std::string& out, const Decimal& number, std::string_view decimal) {
    if (number.exponent <= 0) out += '0';
    for (int place = number.exponent - 1; place >= 0; --place) out += number.DigitAt(place);
    if (number.count <= number.exponent) return;
    out += decimal;
    for (int place = -1; place >= number.exponent - number.count; --place) out += number.DigitAt(place);
}

void AppendScientific(std::string& out, const Decimal& number, std::string_view decimal) {
    out += number.digits[0];
    if (number.count > 1) out += decimal;
    out.append(number.digits.data() + 1, static_cast<std::size_t>(number.count - 1));
    const int exponent = number.exponent - 1;
    out += exponent < 0 ? "E-" : "E+";
    AppendNumber(out, std::abs(exponent), 2);
}

/// The fixed form as long as `maxDigits` places hold the number, before and after the point.
std::string TextFromDecimal(const Decimal& number, int maxDigits, const UserLocale& user) {
    if (number.IsZero()) return "0";
    std::string out;
    if (number.negative) out += '-';
    if (number.exponent <= maxDigits && number.count - number.exponent <= maxDigits)
        AppendFixed(out, number, user.decimal);
    else
        AppendScientific(out, number, user.decimal);
    return out;
}

}  // namespace

std::string TextFromDouble(double value, const UserLocale& user) {
    if (!std::isfinite(value)) return TextOfNonFinite(value);
    if (std::abs(value) < 1e9 && value == std::trunc(value)) return std::to_string(static_cast<int>(value));
    return TextFromDecimal(Decimal::Of(value), Decimal::MaxDigits, user);
}

std::string TextFromSingle(float value, const UserLocale& user) {
    if (!std::isfinite(value)) return TextOfNonFinite(static_cast<double>(value));
    return TextFromDecimal(Decimal::Of(value), 7, user);
}

std::string TextFromBoolean(bool value) { return value ? "True" : "False"; }

Converted<std::string> TextFromDate(double moment, const UserLocale& user) {
    const auto parts = PartsOfMoment(moment);
    if (!parts) return Fault::InvalidCall;
    const bool showDate = std::trunc(moment) != 0;
    const bool showTime = !showDate || moment != std::trunc(moment);
    std::string out;
    if (showDate) AppendUserPicture(out, *parts, user.shortDate, user);
    if (showDate && showTime) out += ' ';
    if (showTime) AppendUserPicture(out, *parts, user.time, user);
    return out;
}

}  // namespace tessaloom
