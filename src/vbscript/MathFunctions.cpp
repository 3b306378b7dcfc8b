#include <cmath>
#include <limits>

#include "vbscript/Arguments.h"
#include "vbscript/BuiltinTables.h"
#include "vbscript/Operators.h"

namespace tessaloom::vbscript {

namespace {

constexpr std::int64_t CurrencyScale = 10000;

Value OfReal(double real) {
    if (!std::isfinite(real)) Fail(ErrorCode::Overflow);
    return Value::OfDouble(real);
}

template <double (*Function)(double)>
Value OfDouble(Context& context, std::span<Value> values) {
    return OfReal(Function(ToDouble(context, values[0])));
}

Value Log(Context& context, std::span<Value> values) {
    const double number = ToDouble(context, values[0]);
    if (number <= 0) Fail(ErrorCode::InvalidCall);
    return OfReal(std::log(number));
}

Value Sqr(Context& context, std::span<Value> values) {
    const double number = ToDouble(context, values[0]);
    if (number < 0) Fail(ErrorCode::InvalidCall);
    return OfReal(std::sqrt(number));
}

Value Sgn(Context& context, std::span<Value> values) {
    const double number = ToDouble(context, values[0]);
    return Value::OfInteger((number > 0) - (number < 0));
}

/// A number in its own type: a text becomes a Double, Boolean and Empty an Integer.
Value NumberAt(const Arguments& of, std::size_t index) {
    const Value& value = of.Plain(index);
    switch (value.Type()) {
        case VarType::String:
            return Value::OfDouble(of.Double(index));
        case VarType::Empty:
        case VarType::Boolean:
            return Value::OfInteger(of.Long(index));
        case VarType::Error:
        case VarType::Array:
            Fail(ErrorCode::TypeMismatch);
        default:
            return value;
    }
}

Value Abs(Context& context, std::span<Value> values) {
    Value number = NumberAt(Arguments(context, values), 0);
    if (number.Is(VarType::Null)) return number;
    return Holds(context, Comparison::Less, number, Value::OfInteger(0)) ? Negate(context, number) : number;
}

/// Int and Fix: both keep the type.
template <double (*Cut)(double)>
Value CutDecimals(Context& context, std::span<Value> values) {
    Value number = NumberAt(Arguments(context, values), 0);
    switch (number.Type()) {
        case VarType::Single:
            return Value::OfSingle(static_cast<float>(Cut(number.Real())));
        case VarType::Double:
            return Value::OfDouble(Cut(number.Real()));
        case VarType::Date:
            return Value::OfDate(Cut(number.Real()));
        case VarType::Currency: {
            const std::int64_t rest = number.Currency() % CurrencyScale;
            const bool further = rest < 0 && Cut(-0.5) < 0;
            std::int64_t whole = number.Currency() - rest;
            if (further && __builtin_sub_overflow(whole, CurrencyScale, &whole)) Fail(ErrorCode::Overflow);
            return Value::OfCurrency(whole);
        }
        default:
            return number;
    }
}

/// Halves to the even neighbour, on the product that the processor gives.
double Rounded(double number, int decimals) {
    const double scale = std::pow(10, decimals), scaled = number * scale;
    return std::isfinite(scaled) ? std::nearbyint(scaled) / scale : number;
}

/// The same for an amount in ten-thousandths, exactly.
std::int64_t RoundedAmount(std::int64_t amount, int decimals) {
    std::int64_t step = 1;
    for (int i = decimals; i < 4; ++i) step *= 10;
    const std::int64_t rest = amount % step, magnitude = std::abs(rest);
    const std::int64_t whole = amount - rest;
    const bool further = 2 * magnitude > step || (2 * magnitude == step && whole / step % 2 != 0);
    std::int64_t rounded = whole;
    if (further && __builtin_add_overflow(whole, amount < 0 ? -step : step, &rounded))
        Fail(ErrorCode::Overflow);
    return rounded;
}

Value Round(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    const int decimals = of.LongWithin(1, 0, std::numeric_limits<int>::max(), 0);
    const Value number = NumberAt(of, 0);
    switch (number.Type()) {
        case VarType::Single:
            return Value::OfSingle(static_cast<float>(Rounded(number.Real(), decimals)));
        case VarType::Double:
        case VarType::Date:
            return Value::OfDouble(Rounded(number.Real(), decimals));
        case VarType::Currency:
            return Value::OfCurrency(RoundedAmount(number.Currency(), decimals));
        default:
            return number;
    }
}

Value Rnd(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    Random& random = context.random;
    const float number = of.Has(0) ? ToSingle(context, values[0]) : 1;
    return Value::OfSingle(number < 0    ? random.Restart(number)
                           : number == 0 ? random.Latest()
                                         : random.Next());
}

// clang-format off
constexpr Builtin Functions[] = {
    {u"Abs",   1, 1, Abs},
    {u"Atn",   1, 1, OfDouble<std::atan>},
    {u"Cos",   1, 1, OfDouble<std::cos>},
    {u"Exp",   1, 1, OfDouble<std::exp>},
    {u"Fix",   1, 1, CutDecimals<std::trunc>},
    {u"Int",   1, 1, CutDecimals<std::floor>},
    {u"Log",   1, 1, Log},
    {u"Rnd",   0, 1, Rnd},
    {u"Round", 1, 2, Round},
    {u"Sgn",   1, 1, Sgn},
    {u"Sin",   1, 1, OfDouble<std::sin>},
    {u"Sqr",   1, 1, Sqr},
    {u"Tan",   1, 1, OfDouble<std::tan>},
};
// clang-format on

}  // namespace

std::span<const Builtin> MathFunctions() { return Functions; }

void Randomize(Context& context, const Value* seed) {
    context.random.Seed(seed ? ToDouble(context, *seed) : context.host.Timer());
}

}  // namespace tessaloom::vbscript
