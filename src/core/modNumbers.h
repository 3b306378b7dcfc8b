#pragma once

#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "locale/Format.h"
#include "platform/UserLocale.h"

/// Numbers, times and booleans in the settings files, the same in every locale: "." is the decimal separator
/// there.
///
/// What cannot be converted goes to the common error report and yields 0 (or an empty text). Moments are
/// local day numbers (locale/DateParts.h). All state belongs to the process and to its one engine thread.
namespace tessaloom::modNumbers {

/// Takes the user's settings for all conversions below. To be called first at start-up; before, English is in
/// force.
void InitNumberFormat(const UserLocale& user);

/// The settings in force.
const UserLocale& Locale();

/// 1 when the user writes a decimal comma, else 0.
int DecimalIsComma();

/// Always 0: dots between hours, minutes and seconds are read as colons, and colons are never written as
/// dots.
int TimeSeparatorIsDot();

/// The year of dates without one; 0 (the initial value) takes that of the system's local date.
void SetCurrentYear(int year);

/// True for "true", "yes" and any number but 0; everything else is false. Never reports.
bool Str2Bool(std::string_view text);

double Str2Dbl(std::string_view text);
std::int16_t Str2Int(std::string_view text);
int Str2Lng(std::string_view text);
double Str2DblNI(std::string_view text);
float Str2SngNI(std::string_view text);

/// Above 2,000,000,000 the fallback below, without a report; between 32,768 and that an overflow.
std::int16_t Str2IntNI(std::string_view text);
inline constexpr std::int16_t Str2IntFallback = -27648;  ///< The low 16 bits of the other one; kept.

/// Above 2,000,000,000 the fallback below, which callers take for "no limit".
int Str2LngNI(std::string_view text);
inline constexpr int Str2LngFallback = 2000000000;

/// Whole numbers are rounded, a half to the even neighbour.
std::int16_t CIntNI(std::string_view text);
std::int16_t CIntNI(double value);
int CLngNI(std::string_view text);
int CLngNI(double value);
double CDblNI(std::string_view text);
double CDblNI(double value);
float CSngNI(std::string_view text);
float CSngNI(double value);

/// The same reading as `Str2Bool`; false where the text is neither of the two words, nor a number.
bool TryBool(std::string_view text, bool& value);

/// The same reading as `CDblNI`, but a failure leaves `value` alone and is only told by the result.
bool TryDblNI(std::string_view text, double& value);

/// A moment; "07.30" reads as "07:30".
double CDateNI(std::string_view text);
double CDateNI(double moment);

/// The same reading as `CDateNI`, but a failure leaves `moment` alone and is only told by the result.
bool TryDateNI(std::string_view text, double& moment);

/// With a decimal point in every locale: a double with at most 15 significant digits, a float with 7.
std::string CStrNI(double value);
std::string CStrNI(float value);
std::string CStrNI(int value);
std::string CStrNI(std::int16_t value);
std::string CStrNI(bool value);  ///< "True" or "False".
std::string CStrNI(std::string_view text);
std::string CStrNI(FormatDate date);
inline std::string CStrNI(const char* text) { return CStrNI(std::string_view(text)); }

/// `value` under `pattern` (locale/Format.h), for files: a decimal comma (the first comma) becomes a point.
std::string FormatNI(const FormatValue& value, std::string_view pattern);

/// The same in the user's own style, for display; the first comma of `pattern` counts as its decimal point.
std::string FormatI(const FormatValue& value, std::string_view pattern);

/// A display pattern with as many decimals as `sample` has after its ".".
std::string GetFormatI(std::string_view sample);

/// The user's decimal separator: "," or ".".
std::string NumberSeparator();

/// `x` minus the largest whole number not above it: 0.75 for -1.25.
inline double Frac(double x) { return x - std::floor(x); }

/// Moves `value` to the nearer end of low .. high when it lies outside.
template <typename T>
constexpr void Limit(T& value, std::type_identity_t<T> low, std::type_identity_t<T> high) {
    if (value < low)
        value = low;
    else if (value > high)
        value = high;
}

}  // namespace tessaloom::modNumbers
