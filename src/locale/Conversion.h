#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "locale/Error.h"
#include "platform/UserLocale.h"

/// Text to number, boolean and date and back, as the user's regional settings write them.
///
/// Nothing here throws for a text it cannot read, so a failure is as cheap as a success. Moments are local
/// day numbers: whole days since 30 December 1899; the fraction is the time of day, also before that day.
namespace tessaloom {

enum class Fault : std::uint8_t {
    None = 0,
    InvalidCall = static_cast<int>(ErrorNumber::InvalidCall),
    Overflow = static_cast<int>(ErrorNumber::Overflow),
    TypeMismatch = static_cast<int>(ErrorNumber::TypeMismatch),
};

/// A value, or why there is none (`value` is then the zero value of its type).
template <typename T>
struct Converted {
    T value{};
    Fault fault = Fault::None;

    Converted(T result) : value(std::move(result)) {}
    Converted(Fault reason) : fault(reason) {}

    explicit operator bool() const { return fault == Fault::None; }

    /// The value; throws the `Error` of the fault when there is none.
    T OrThrow() && {
        if (fault != Fault::None) throw Error(static_cast<ErrorNumber>(fault));
        return std::move(value);
    }
};

/// @name Text to value
/// Blanks around, a sign on either side, grouping anywhere, the user's currency sign, parentheses for a
/// negative amount, an exponent with `e` or `d`, and `&H` and `&O` numbers are understood. Whole numbers are
/// rounded, a half to the even neighbour. Hexadecimal texts with a value of 16 bits are signed only when read
/// as Integer.
/// @{
Converted<double> DoubleFromText(std::string_view text, const UserLocale& user);
Converted<float> SingleFromText(std::string_view text, const UserLocale& user);
Converted<int> LongFromText(std::string_view text, const UserLocale& user);
Converted<std::int16_t> IntegerFromText(std::string_view text, const UserLocale& user);

/// "True", "False" whatever their case, the same between two "#", or any number.
Converted<bool> BooleanFromText(std::string_view text, const UserLocale& user);

/// A date, a time, or both. A date without a year lies in `currentYear`; two digits mean 1930 .. 2029.
Converted<double> DateFromText(std::string_view text, const UserLocale& user, int currentYear);
/// @}

/// @name Number to number
/// A half goes to the even neighbour; outside the range of the target (or not a number): Overflow.
/// @{
Converted<std::int16_t> IntegerFromDouble(double value);
Converted<int> LongFromDouble(double value);
Converted<float> SingleFromDouble(double value);
/// @}

/// @name Value to text
/// @{

/// At most 15 significant digits; fixed to 15 decimals and below 1E+15, else as in "1.5E-20".
std::string TextFromDouble(double value, const UserLocale& user);

/// At most 7 significant digits; fixed to 7 decimals and below 1E+07, else with an exponent.
std::string TextFromSingle(float value, const UserLocale& user);

/// "True" or "False", in every locale.
std::string TextFromBoolean(bool value);

/// The user's short date, the time, or both: without the time at midnight, without the date on day 0.
/// A moment outside the years 100 .. 9999 is an InvalidCall.
Converted<std::string> TextFromDate(double moment, const UserLocale& user);
/// @}

}  // namespace tessaloom
