#include "vbscript/Conversions.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "locale/DateParts.h"
#include "vbscript/Array.h"
#include "vbscript/Error.h"

namespace tessaloom::vbscript {

namespace {

constexpr int MaxDefaultChain = 32;  ///< Default members that give objects again.
constexpr double CurrencyScale = 10000;

[[noreturn]] void FailAs(tessaloom::Fault fault) { Fail(static_cast<ErrorCode>(fault)); }

template <typename T>
T Checked(Converted<T> converted) {
    if (!converted) FailAs(converted.fault);
    return std::move(converted.value);
}

/// A text as the conversions from texts read it: they look at all of it, so what is longer than any number,
/// date or truth value that anybody writes is none, besides the blanks around it.
std::string ShortText(std::u16string_view text) {
    constexpr std::size_t Longest = 1 << 16;
    constexpr std::u16string_view Unreadable = u"?";
    if (text.size() > Longest) {
        const std::size_t first = std::min(text.find_first_not_of(u' '), text.size());
        text.remove_prefix(first);
        text = text.substr(0, text.find_last_not_of(u' ') + 1);
    }
    return Utf8Of(text.size() > Longest ? Unreadable : text);
}

[[noreturn]] void FailToConvert(const Value& value) {
    Fail(value.Is(VarType::Null) ? ErrorCode::InvalidUseOfNull : ErrorCode::TypeMismatch);
}

bool IsObject(const Value& value) { return value.Is(VarType::Object); }

/// A whole amount of a Currency, halves to the even neighbour.
std::int64_t WholeOfCurrency(std::int64_t amount) {
    constexpr std::int64_t Scale = 10000;
    std::int64_t whole = amount / Scale;
    const std::int64_t rest = std::abs(amount % Scale);
    if (rest > Scale / 2 || (rest == Scale / 2 && whole % 2 != 0)) whole += amount < 0 ? -1 : 1;
    return whole;
}

std::int64_t CurrencyOfDouble(double number) {
    // the whole part apart: the product of all of it would lose the last digits of large amounts
    const double whole = std::trunc(number);
    const double decimals = std::nearbyint((number - whole) * CurrencyScale);
    constexpr double Most = 922337203685478;
    if (!(std::abs(whole) < Most)) Fail(ErrorCode::Overflow);
    std::int64_t amount = 0;
    if (__builtin_add_overflow(static_cast<std::int64_t>(whole) * 10000, static_cast<std::int64_t>(decimals),
                               &amount))
        Fail(ErrorCode::Overflow);
    return amount;
}

/// A plain decimal text exactly, which a double cannot always hold; nothing for any other form.
std::optional<std::int64_t> CurrencyOfPlainText(std::string_view text, const UserLocale& locale) {
    const bool negative = text.starts_with('-');
    if (negative) text.remove_prefix(1);
    const std::size_t point = std::min(text.find(locale.decimal), text.size());
    const std::string_view decimals = text.substr(std::min(point + locale.decimal.size(), text.size()));
    constexpr std::size_t Places = 4;
    if (point == 0 || decimals.size() > Places) return std::nullopt;
    std::string digits(text.substr(0, point));
    digits.append(decimals).append(Places - decimals.size(), '0');
    if (negative) digits.insert(digits.begin(), '-');
    std::int64_t amount = 0;
    const auto end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, amount);
    if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
    return amount;
}

/// The value as a whole number of any size, rounded; 6 outside the range of a Long.
template <typename Whole>
Whole ToWhole(Context& context, const Value& value) {
    std::int64_t whole = 0;
    switch (value.Type()) {
        case VarType::Empty:
            return 0;
        case VarType::Integer:
        case VarType::Long:
        case VarType::Boolean:
        case VarType::Byte:
            whole = value.Whole();
            break;
        case VarType::Single:
        case VarType::Double:
        case VarType::Date:
            whole = Checked(LongFromDouble(value.Real()));
            break;
        case VarType::Currency:
            whole = WholeOfCurrency(value.Currency());
            break;
        case VarType::String:
            if constexpr (sizeof(Whole) == sizeof(std::int16_t))
                return Checked(IntegerFromText(ShortText(value.Text()), context.locale));
            whole = Checked(LongFromText(ShortText(value.Text()), context.locale));
            break;
        case VarType::Object: {
            Value scratch;
            return ToWhole<Whole>(context, PlainValue(context, value, scratch));
        }
        default:
            FailToConvert(value);
    }
    if (whole < std::numeric_limits<Whole>::min() || whole > std::numeric_limits<Whole>::max())
        Fail(ErrorCode::Overflow);
    return static_cast<Whole>(whole);
}

String TextOfWhole(std::int64_t whole) {
    char buffer[24];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, whole).ptr;
    return String::OfLatin({buffer, end});
}

String TextOfCurrency(std::int64_t amount, const UserLocale& locale) {
    const auto magnitude = amount < 0 ? std::uint64_t{0} - static_cast<std::uint64_t>(amount)
                                      : static_cast<std::uint64_t>(amount);
    std::string text = amount < 0 ? "-" : "";
    text += std::to_string(magnitude / 10000);
    if (auto rest = magnitude % 10000; rest != 0) {
        std::string decimals = std::to_string(10000 + rest).substr(1);
        decimals.erase(decimals.find_last_not_of('0') + 1);
        text += locale.decimal + decimals;
    }
    return String::OfUtf8(text);
}

}  // namespace

const Value& slow::PlainValue(Context& context, const Value& value, Value& scratch) {
    scratch = value;
    for (int i = 0; i < MaxDefaultChain && IsObject(scratch); ++i) {
        if (scratch.IsNothing()) Fail(ErrorCode::ObjectNotSet);
        const Ref<Object> object(scratch.AsObject());
        scratch = object->Invoke(context, Object::DefaultMember, CallKind::Get, {});
    }
    if (IsObject(scratch)) Fail(ErrorCode::NoSuchMember);
    return scratch;
}

bool ToBoolean(Context& context, const Value& value) {
    switch (value.Type()) {
        case VarType::Empty:
            return false;
        case VarType::Integer:
        case VarType::Long:
        case VarType::Boolean:
        case VarType::Byte:
            return value.Whole() != 0;
        case VarType::Single:
        case VarType::Double:
        case VarType::Date:
            return value.Real() != 0;
        case VarType::Currency:
            return value.Currency() != 0;
        case VarType::String:
            return Checked(BooleanFromText(ShortText(value.Text()), context.locale));
        case VarType::Object: {
            Value scratch;
            return ToBoolean(context, PlainValue(context, value, scratch));
        }
        default:
            FailToConvert(value);
    }
}

bool ToCondition(Context& context, const Value& value) {
    if (value.Is(VarType::Null)) return false;
    if (!IsObject(value)) return ToBoolean(context, value);
    Value scratch;
    return ToCondition(context, PlainValue(context, value, scratch));
}

std::uint8_t ToByte(Context& context, const Value& value) {
    Value scratch;
    const Value& plain = PlainValue(context, value, scratch);
    // True has all bits set
    if (plain.Is(VarType::Boolean)) return plain.Whole() != 0 ? 255 : 0;
    return ToWhole<std::uint8_t>(context, plain);
}

std::int16_t ToInteger(Context& context, const Value& value) { return ToWhole<std::int16_t>(context, value); }

std::int32_t ToLong(Context& context, const Value& value) { return ToWhole<std::int32_t>(context, value); }

float ToSingle(Context& context, const Value& value) {
    return Checked(SingleFromDouble(ToDouble(context, value)));
}

double ToDouble(Context& context, const Value& value) {
    switch (value.Type()) {
        case VarType::Empty:
            return 0;
        case VarType::Integer:
        case VarType::Long:
        case VarType::Boolean:
        case VarType::Byte:
            return value.Whole();
        case VarType::Single:
        case VarType::Double:
        case VarType::Date:
            return value.Real();
        case VarType::Currency:
            return static_cast<double>(value.Currency()) / CurrencyScale;
        case VarType::String:
            return DoubleOfText(context, value.Text());
        case VarType::Object: {
            Value scratch;
            return ToDouble(context, PlainValue(context, value, scratch));
        }
        default:
            FailToConvert(value);
    }
}

std::int64_t ToCurrency(Context& context, const Value& value) {
    if (value.Is(VarType::Currency)) return value.Currency();
    Value scratch;
    const Value& plain = PlainValue(context, value, scratch);
    if (plain.Is(VarType::Currency)) return plain.Currency();
    if (plain.Is(VarType::String))
        if (const auto amount = CurrencyOfPlainText(ShortText(plain.Text()), context.locale)) return *amount;
    return CurrencyOfDouble(ToDouble(context, plain));
}

double ToDate(Context& context, const Value& value) {
    if (value.Is(VarType::Date)) return value.Real();
    Value scratch;
    const Value& plain = PlainValue(context, value, scratch);
    if (plain.Is(VarType::String))
        return Checked(DateFromText(ShortText(plain.Text()), context.locale, CurrentYear(context)));
    return CheckedDate(ToDouble(context, plain));
}

namespace {

/// A text of the bytes themselves: what LenB, MidB and AscB take apart. Of other arrays error 13.
String TextOfBytes(const Value& value) {
    const Array& array = *value.AsArray();
    if (!array.HoldsBytes()) FailToConvert(value);
    BudgetBytes bytes(array.Count(), '\0');
    InStretches(bytes.size(), [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) {
            const Value& element = array.Elements()[i];
            if (!element.Is(VarType::Byte)) FailToConvert(value);
            bytes[i] = static_cast<char>(element.Whole());
        }
    });
    return String::OfBytes(bytes.data(), bytes.size());
}

}  // namespace

String ToText(Context& context, const Value& value) {
    switch (value.Type()) {
        case VarType::Empty:
            return {};
        case VarType::String:
            return value.AsString();
        case VarType::Integer:
        case VarType::Long:
        case VarType::Byte:
            return TextOfWhole(value.Whole());
        case VarType::Boolean:
            return String::OfLatin(TextFromBoolean(value.Whole() != 0));
        case VarType::Single:
            return String::OfUtf8(TextFromSingle(static_cast<float>(value.Real()), context.locale));
        case VarType::Double:
            return String::OfUtf8(TextFromDouble(value.Real(), context.locale));
        case VarType::Date:
            return String::OfUtf8(Checked(TextFromDate(value.Real(), context.locale)));
        case VarType::Currency:
            return TextOfCurrency(value.Currency(), context.locale);
        case VarType::Object: {
            Value scratch;
            return ToText(context, PlainValue(context, value, scratch));
        }
        case VarType::Array:
            return TextOfBytes(value);
        default:
            FailToConvert(value);
    }
}

std::u16string TypeNameOf(const Value& value) {
    switch (value.Type()) {
        case VarType::Empty:
            return u"Empty";
        case VarType::Null:
            return u"Null";
        case VarType::Integer:
            return u"Integer";
        case VarType::Long:
            return u"Long";
        case VarType::Single:
            return u"Single";
        case VarType::Double:
            return u"Double";
        case VarType::Currency:
            return u"Currency";
        case VarType::Date:
            return u"Date";
        case VarType::String:
            return u"String";
        case VarType::Object:
            return value.IsNothing() ? u"Nothing" : std::u16string(value.AsObject()->TypeName());
        case VarType::Error:
            return u"Error";
        case VarType::Boolean:
            return u"Boolean";
        case VarType::Byte:
            return u"Byte";
        case VarType::Array:
            return value.AsArray()->HoldsBytes() ? u"Byte()" : u"Variant()";
        case VarType::Reference:
            break;
    }
    return TypeNameOf(value.Resolved());
}

bool IsNumeric(Context& context, const Value& value) {
    switch (value.Type()) {
        case VarType::String:
            return static_cast<bool>(DoubleFromText(ShortText(value.Text()), context.locale));
        case VarType::Object: {
            Value scratch;
            return !value.IsNothing() && IsNumeric(context, PlainValue(context, value, scratch));
        }
        case VarType::Null:
        case VarType::Date:
        case VarType::Error:
        case VarType::Array:
            return false;
        default:
            return true;
    }
}

bool IsDate(Context& context, const Value& value) {
    if (value.Is(VarType::String))
        return static_cast<bool>(DateFromText(ShortText(value.Text()), context.locale, CurrentYear(context)));
    if (!IsObject(value)) return value.Is(VarType::Date);
    Value scratch;
    return !value.IsNothing() && IsDate(context, PlainValue(context, value, scratch));
}

double DoubleOfText(Context& context, std::u16string_view text) {
    return Checked(DoubleFromText(ShortText(text), context.locale));
}

int CurrentYear(Context& context) {
    const auto parts = PartsOfMoment(context.host.Now());
    return parts ? parts->year : 2000;
}

double CheckedDate(double moment) {
    if (!(moment > FirstDayNumber - 1.0 && moment < LastDayNumber + 1.0)) Fail(ErrorCode::Overflow);
    return moment;
}

}  // namespace tessaloom::vbscript
