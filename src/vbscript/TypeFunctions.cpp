#include "vbscript/Arguments.h"
#include "vbscript/Array.h"
#include "vbscript/BuiltinTables.h"

/// Conversions, questions about types, and arrays.
namespace tessaloom::vbscript {

namespace {

/// One of the functions CBool .. CStr, from the conversion and the maker of its result.
template <auto Convert, auto Make>
Value ConvertTo(Context& context, std::span<Value> values) {
    return Make(Convert(context, values[0]));
}

template <VarType Type>
Value IsOfType(Context&, std::span<Value> values) {
    return Value::OfBoolean(values[0].Is(Type));
}

Value IsDateFunction(Context& context, std::span<Value> values) {
    return Value::OfBoolean(IsDate(context, values[0]));
}

Value IsNumericFunction(Context& context, std::span<Value> values) {
    return Value::OfBoolean(IsNumeric(context, values[0]));
}

Value TypeName(Context&, std::span<Value> values) { return Value::OfText(TypeNameOf(values[0])); }

/// Puts the value of the default member into the object's place, where there is one.
void TakeDefault(const Arguments& of, std::size_t index) {
    if (of[index].IsNothing()) return;
    try {
        of.Plain(index);
    } catch (const RuntimeError& error) {
        const auto code = static_cast<ErrorCode>(error.number);
        if (code != ErrorCode::NoSuchMember && code != ErrorCode::WrongArgumentCount) throw;
    }
}

Value VarTypeFunction(Context& context, std::span<Value> values) {
    TakeDefault(Arguments(context, values), 0);
    const Value& value = values[0];
    constexpr int ArrayOfBytes = 0x2000 | static_cast<int>(VarType::Byte);
    const bool bytes = value.Is(VarType::Array) && value.AsArray()->HoldsBytes();
    return Value::OfInteger(bytes ? ArrayOfBytes : static_cast<int>(value.Type()));
}

Value ArrayFunction(Context&, std::span<Value> values) { return Value::OfArray(Array::OfValues(values)); }

int UpperBoundOf(const Arguments& of) {
    const Value& value = of.Plain(0);
    if (!value.Is(VarType::Array)) Fail(ErrorCode::TypeMismatch);
    return value.AsArray()->UpperBound(of.LongOr(1, 1));
}

Value LBound(Context& context, std::span<Value> values) {
    UpperBoundOf(Arguments(context, values));
    return Value::OfLong(0);
}

Value UBound(Context& context, std::span<Value> values) {
    return Value::OfLong(UpperBoundOf(Arguments(context, values)));
}

// clang-format off
constexpr Builtin Functions[] = {
    {u"Array",     0, Builtin::AnyCount, ArrayFunction},
    {u"CBool",     1, 1,                 ConvertTo<ToBoolean, Value::OfBoolean>},
    {u"CByte",     1, 1,                 ConvertTo<ToByte, Value::OfByte>},
    {u"CCur",      1, 1,                 ConvertTo<ToCurrency, Value::OfCurrency>},
    {u"CDate",     1, 1,                 ConvertTo<ToDate, Value::OfDate>},
    {u"CDbl",      1, 1,                 ConvertTo<ToDouble, Value::OfDouble>},
    {u"CInt",      1, 1,                 ConvertTo<ToInteger, Value::OfInteger>},
    {u"CLng",      1, 1,                 ConvertTo<ToLong, Value::OfLong>},
    {u"CSng",      1, 1,                 ConvertTo<ToSingle, Value::OfSingle>},
    {u"CStr",      1, 1,                 ConvertTo<ToText, Value::OfString>},
    {u"IsArray",   1, 1,                 IsOfType<VarType::Array>},
    {u"IsDate",    1, 1,                 IsDateFunction},
    {u"IsEmpty",   1, 1,                 IsOfType<VarType::Empty>},
    {u"IsNull",    1, 1,                 IsOfType<VarType::Null>},
    {u"IsNumeric", 1, 1,                 IsNumericFunction},
    {u"IsObject",  1, 1,                 IsOfType<VarType::Object>},
    {u"LBound",    1, 2,                 LBound},
    {u"TypeName",  1, 1,                 TypeName},
    {u"UBound",    1, 2,                 UBound},
    {u"VarType",   1, 1,                 VarTypeFunction},
};
// clang-format on

}  // namespace

std::span<const Builtin> TypeFunctions() { return Functions; }

}  // namespace tessaloom::vbscript
