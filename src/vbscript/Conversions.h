#pragma once

#include <cstdint>
#include <string>

#include "vbscript/Context.h"
#include "vbscript/Value.h"

/// Conversions between the kinds of values, with the user's locale where text is involved.
///
/// They throw RuntimeError: 13 for what cannot be converted (arrays, texts, omitted arguments), 6 outside the
/// range, 94 for Null. Halves round to the even neighbour. Objects convert by their default member (Nothing:
/// 91).
namespace tessaloom::vbscript {

/// The general cases behind inline functions.
namespace slow {

const Value& PlainValue(Context& context, const Value& value, Value& scratch);

}  // namespace slow

bool ToBoolean(Context& context, const Value& value);
std::uint8_t ToByte(Context& context, const Value& value);
std::int16_t ToInteger(Context& context, const Value& value);
std::int32_t ToLong(Context& context, const Value& value);
float ToSingle(Context& context, const Value& value);
double ToDouble(Context& context, const Value& value);
std::int64_t ToCurrency(Context& context, const Value& value);  ///< In ten-thousandths.
double ToDate(Context& context, const Value& value);  ///< A day number within the years 100 .. 9999.
String ToText(Context& context, const Value& value);

/// The text of a condition's value: Null counts as false.
bool ToCondition(Context& context, const Value& value);

/// An index of an array: whole, rounded (13, 6 and 94 as above).
inline std::int32_t ToIndex(Context& context, const Value& value) {
    return value.Is(VarType::Integer) || value.Is(VarType::Long) ? value.Whole() : ToLong(context, value);
}

/// The value itself, or that of the default member when it is an object. `scratch` may come to hold it.
inline const Value& PlainValue(Context& context, const Value& value, Value& scratch) {
    return value.Is(VarType::Object) ? slow::PlainValue(context, value, scratch) : value;
}

/// What TypeName gives; "Variant()" for arrays, the class's name for objects.
std::u16string TypeNameOf(const Value& value);

/// Can be read as a number; false instead of an error for anything else.
bool IsNumeric(Context& context, const Value& value);

/// Is a date or a text that can be read as one.
bool IsDate(Context& context, const Value& value);

/// @name For those who have no Value
/// @{
double DoubleOfText(Context& context, std::u16string_view text);
int CurrentYear(Context& context);

/// What a double is as a Date; throws 6 outside the years 100 .. 9999.
double CheckedDate(double moment);
/// @}

}  // namespace tessaloom::vbscript
