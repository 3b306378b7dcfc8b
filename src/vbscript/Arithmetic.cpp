#include <algorithm>
#include <cmath>
#include <limits>

#include "vbscript/Operators.h"
#include "vbscript/PlainOperands.h"

namespace tessaloom::vbscript {

namespace {

constexpr std::int64_t CurrencyScale = 10000;

/// The kinds of numbers in the order of their reach; how two operands find the kind of their result.
enum class Kind : std::uint8_t { Byte, Integer, Long, Single, Double, Currency, Date };

/// Boolean and Empty count as Integer, a text as Double. Arrays and omitted arguments are error 13.
Kind KindOf(const Value& value) {
    switch (value.Type()) {
        case VarType::Byte:
            return Kind::Byte;
        case VarType::Empty:
        case VarType::Boolean:
        case VarType::Integer:
            return Kind::Integer;
        case VarType::Long:
            return Kind::Long;
        case VarType::Single:
            return Kind::Single;
        case VarType::Double:
        case VarType::String:
            return Kind::Double;
        case VarType::Currency:
            return Kind::Currency;
        case VarType::Date:
            return Kind::Date;
        default:
            Fail(ErrorCode::TypeMismatch);
    }
}

/// The two operands without objects, and whether one is Null (the other one has been checked then).
struct Operands : PlainOperands {
    Operands(Context& context, const Value& first, const Value& second)
        : PlainOperands(context, first, second) {
        const bool aIsNull = a.Is(VarType::Null), bIsNull = b.Is(VarType::Null);
        if (aIsNull && !bIsNull) KindOf(b);
        if (bIsNull && !aIsNull) KindOf(a);
        anyNull = aIsNull || bIsNull;
    }

    bool anyNull;
};

std::int64_t WholeOf(const Value& value) { return value.Is(VarType::Empty) ? 0 : value.Whole(); }

Value OfReal(double real) {
    if (!std::isfinite(real)) Fail(ErrorCode::Overflow);
    return Value::OfDouble(real);
}

/// A Single when it still is in its range.
Value OfShortReal(double real) {
    if (!(std::abs(real) <= static_cast<double>(std::numeric_limits<float>::max()))) return OfReal(real);
    return Value::OfSingle(static_cast<float>(real));
}

/// The smallest kind from `kind` on that holds the number.
Value OfGrowing(std::int64_t whole, Kind kind) {
    if (kind == Kind::Byte && whole >= 0 && whole <= 255)
        return Value::OfByte(static_cast<std::uint8_t>(whole));
    return OfWhole(whole, kind == Kind::Long ? VarType::Long : VarType::Integer);
}

/// Both are Integer, Long or Double, and at least one is Double.
bool AreReals(const Value& a, const Value& b) {
    const auto isReal = [](const Value& value) { return value.Is(VarType::Double); };
    return (isReal(a) && (isReal(b) || IsIntegerOrLong(b))) || (isReal(b) && IsIntegerOrLong(a));
}

double RealOf(const Value& value) { return value.Is(VarType::Double) ? value.Real() : value.Whole(); }

/// Both are Integer or Long, and the second one is not 0.
bool AreDivisible(const Value& a, const Value& b) {
    return IsIntegerOrLong(a) && IsIntegerOrLong(b) && b.Whole() != 0;
}

/// The kind in which two operands meet when neither is a Date.
Kind Meeting(Kind a, Kind b) {
    const Kind wider = std::max(a, b);
    const bool mixed = (a == Kind::Single && b == Kind::Long) || (a == Kind::Long && b == Kind::Single);
    return mixed ? Kind::Double : wider;
}

std::int64_t AddExactly(std::int64_t a, std::int64_t b, bool minus) {
    std::int64_t sum = 0;
    const bool over = minus ? __builtin_sub_overflow(a, b, &sum) : __builtin_add_overflow(a, b, &sum);
    if (over) Fail(ErrorCode::Overflow);
    return sum;
}

Value Sum(Context& context, const Operands& of, bool minus) {
    const Kind a = KindOf(of.a), b = KindOf(of.b);
    const auto real = [&] {
        const double x = ToDouble(context, of.a), y = ToDouble(context, of.b);
        return minus ? x - y : x + y;
    };
    if (a == Kind::Date || b == Kind::Date)
        return minus && a == b ? OfReal(real()) : Value::OfDate(CheckedDate(real()));
    switch (const Kind kind = Meeting(a, b)) {
        case Kind::Currency:
            return Value::OfCurrency(AddExactly(ToCurrency(context, of.a), ToCurrency(context, of.b), minus));
        case Kind::Double:
            return OfReal(real());
        case Kind::Single:
            return OfShortReal(real());
        default:
            return OfGrowing(minus ? WholeOf(of.a) - WholeOf(of.b) : WholeOf(of.a) + WholeOf(of.b), kind);
    }
}

/// The product of two amounts, halves to the even neighbour.
std::int64_t MultiplyCurrency(std::int64_t a, std::int64_t b) {
    __extension__ using Wide = __int128;
    const Wide product = Wide{a} * b;
    Wide whole = product / CurrencyScale;
    const Wide rest = product % CurrencyScale, magnitude = rest < 0 ? -rest : rest;
    if (magnitude > CurrencyScale / 2 || (magnitude == CurrencyScale / 2 && whole % 2 != 0))
        whole += product < 0 ? -1 : 1;
    if (whole != static_cast<std::int64_t>(whole)) Fail(ErrorCode::Overflow);
    return static_cast<std::int64_t>(whole);
}

/// Operands of \ and Mod: whole, of the smallest kind that has them.
struct WholeOperands {
    std::int64_t a, b;
    Kind kind;
};

WholeOperands WholesOf(Context& context, const Operands& of) {
    const Kind kind = std::min(std::max(KindOf(of.a), KindOf(of.b)), Kind::Long);
    const WholeOperands wholes{ToLong(context, of.a), ToLong(context, of.b), kind};
    if (wholes.b == 0) Fail(ErrorCode::DivisionByZero);
    return wholes;
}

}  // namespace

Value slow::Add(Context& context, const Value& first, const Value& second) {
    if (AreReals(first, second)) return OfReal(RealOf(first) + RealOf(second));
    const Operands of(context, first, second);
    if (of.anyNull) return Value::Null();
    const bool aIsText = of.a.Is(VarType::String), bIsText = of.b.Is(VarType::String);
    if ((aIsText && (bIsText || of.b.Is(VarType::Empty))) || (bIsText && of.a.Is(VarType::Empty)))
        return Concatenate(context, of.a, of.b);
    return Sum(context, of, false);
}

Value slow::Subtract(Context& context, const Value& first, const Value& second) {
    if (AreReals(first, second)) return OfReal(RealOf(first) - RealOf(second));
    const Operands of(context, first, second);
    return of.anyNull ? Value::Null() : Sum(context, of, true);
}

Value slow::Multiply(Context& context, const Value& first, const Value& second) {
    if (AreReals(first, second)) return OfReal(RealOf(first) * RealOf(second));
    const Operands of(context, first, second);
    if (of.anyNull) return Value::Null();
    const Kind a = KindOf(of.a), b = KindOf(of.b);
    const auto real = [&] { return ToDouble(context, of.a) * ToDouble(context, of.b); };
    const auto any = [&](Kind kind) { return a == kind || b == kind; };
    if (any(Kind::Date) || any(Kind::Double)) return OfReal(real());
    switch (const Kind kind = Meeting(a, b)) {
        case Kind::Currency:
            return Value::OfCurrency(MultiplyCurrency(ToCurrency(context, of.a), ToCurrency(context, of.b)));
        case Kind::Double:
            return OfReal(real());
        case Kind::Single:
            return OfShortReal(real());
        default:
            return OfGrowing(WholeOf(of.a) * WholeOf(of.b), kind);
    }
}

Value Divide(Context& context, const Value& first, const Value& second) {
    if ((AreReals(first, second) || AreDivisible(first, second)) && RealOf(second) != 0)
        return OfReal(RealOf(first) / RealOf(second));
    const Operands of(context, first, second);
    if (of.anyNull) return Value::Null();
    const double a = ToDouble(context, of.a), b = ToDouble(context, of.b);
    if (b == 0) Fail(a == 0 ? ErrorCode::Overflow : ErrorCode::DivisionByZero);
    const Kind kind = Meeting(KindOf(of.a), KindOf(of.b));
    return kind == Kind::Single ? OfShortReal(a / b) : OfReal(a / b);
}

Value IntegerDivide(Context& context, const Value& first, const Value& second) {
    if (AreDivisible(first, second)) {
        const std::int64_t quotient = std::int64_t{first.Whole()} / second.Whole();
        if (FitsLong(quotient)) return OfWhole(quotient, WiderWhole(first, second));
    }
    const Operands of(context, first, second);
    if (of.anyNull) return Value::Null();
    const WholeOperands wholes = WholesOf(context, of);
    const std::int64_t quotient = wholes.a / wholes.b;
    if (!FitsLong(quotient)) Fail(ErrorCode::Overflow);
    return OfGrowing(quotient, wholes.kind);
}

Value Modulo(Context& context, const Value& first, const Value& second) {
    if (AreDivisible(first, second))
        return OfWhole(std::int64_t{first.Whole()} % second.Whole(), WiderWhole(first, second));
    const Operands of(context, first, second);
    if (of.anyNull) return Value::Null();
    const WholeOperands wholes = WholesOf(context, of);
    return OfGrowing(wholes.a % wholes.b, wholes.kind);
}

Value Power(Context& context, const Value& first, const Value& second) {
    const Operands of(context, first, second);
    if (of.anyNull) return Value::Null();
    const double base = ToDouble(context, of.a), exponent = ToDouble(context, of.b);
    if (base == 0 && exponent < 0) Fail(ErrorCode::InvalidCall);
    const double power = std::pow(base, exponent);
    if (std::isnan(power)) Fail(ErrorCode::InvalidCall);
    return OfReal(power);
}

Value Negate(Context& context, const Value& operand) {
    Value scratch;
    const Value& value = PlainValue(context, operand, scratch);
    if (value.Is(VarType::Null)) return Value::Null();
    switch (const Kind kind = KindOf(value)) {
        case Kind::Date:
            return Value::OfDate(CheckedDate(-value.Real()));
        case Kind::Currency:
            return Value::OfCurrency(AddExactly(0, value.Currency(), true));
        case Kind::Double:
            return Value::OfDouble(-ToDouble(context, value));
        case Kind::Single:
            return Value::OfSingle(static_cast<float>(-value.Real()));
        default:
            return OfGrowing(-WholeOf(value), kind);
    }
}

}  // namespace tessaloom::vbscript
