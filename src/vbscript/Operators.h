#pragma once

#include <span>

#include "vbscript/Conversions.h"
#include "vbscript/Error.h"

/// The operators, with the promotions of the language: whole numbers grow from Byte over Integer and Long to
/// Double instead of overflowing; Null spreads; a text counts as Double. Throw RuntimeError.
namespace tessaloom::vbscript {

namespace slow {

Value Add(Context& context, const Value& a, const Value& b);
Value Subtract(Context& context, const Value& a, const Value& b);
Value Multiply(Context& context, const Value& a, const Value& b);

}  // namespace slow

constexpr bool FitsInteger(std::int64_t whole) { return whole == static_cast<std::int16_t>(whole); }
constexpr bool FitsLong(std::int64_t whole) { return whole == static_cast<std::int32_t>(whole); }

/// Integer and Long follow each other in their numbers, so one comparison finds them.
inline bool IsIntegerOrLong(const Value& value) {
    return static_cast<std::uint16_t>(static_cast<std::uint16_t>(value.Type()) - 2) < 2;
}

/// The result of whole arithmetic whose wider operand is of type `wider` (Integer or Long).
inline Value OfWhole(std::int64_t whole, VarType wider) {
    if (wider == VarType::Integer && FitsInteger(whole)) return Value::OfInteger(static_cast<int>(whole));
    if (FitsLong(whole)) return Value::OfLong(static_cast<int>(whole));
    return Value::OfDouble(static_cast<double>(whole));
}

inline VarType WiderWhole(const Value& a, const Value& b) {
    return a.Is(VarType::Long) || b.Is(VarType::Long) ? VarType::Long : VarType::Integer;
}

inline Value Add(Context& context, const Value& a, const Value& b) {
    if (IsIntegerOrLong(a) && IsIntegerOrLong(b))
        return OfWhole(std::int64_t{a.Whole()} + b.Whole(), WiderWhole(a, b));
    return slow::Add(context, a, b);
}

inline Value Subtract(Context& context, const Value& a, const Value& b) {
    if (IsIntegerOrLong(a) && IsIntegerOrLong(b))
        return OfWhole(std::int64_t{a.Whole()} - b.Whole(), WiderWhole(a, b));
    return slow::Subtract(context, a, b);
}

inline Value Multiply(Context& context, const Value& a, const Value& b) {
    if (IsIntegerOrLong(a) && IsIntegerOrLong(b))
        return OfWhole(std::int64_t{a.Whole()} * b.Whole(), WiderWhole(a, b));
    return slow::Multiply(context, a, b);
}

Value Divide(Context& context, const Value& a, const Value& b);         ///< /
Value IntegerDivide(Context& context, const Value& a, const Value& b);  ///< \ on rounded operands
Value Modulo(Context& context, const Value& a, const Value& b);         ///< Mod on rounded operands
Value Power(Context& context, const Value& a, const Value& b);          ///< ^
Value Negate(Context& context, const Value& a);

Value And(Context& context, const Value& a, const Value& b);
Value Or(Context& context, const Value& a, const Value& b);
Value Xor(Context& context, const Value& a, const Value& b);
Value Eqv(Context& context, const Value& a, const Value& b);
Value Imp(Context& context, const Value& a, const Value& b);
Value Not(Context& context, const Value& a);

Value Concatenate(Context& context, const Value& a, const Value& b);  ///< &

/// target = target & tail, growing the text in place where nobody shares it.
void AppendTo(Context& context, Value& target, const Value& tail);

/// The same with `target & a & b ..`; all of it or, after an error, nothing is appended. Uses up `tail`.
void AppendTo(Context& context, Value& target, std::span<Value> tail);

enum class Comparison : std::uint8_t { Equal, NotEqual, Less, Greater, LessOrEqual, GreaterOrEqual };

/// -1, 0 or 1; Unordered when a side is Null (or not a number).
enum class Order : std::int8_t { Less = -1, Equal = 0, Greater = 1, Unordered = 2 };

Order OrderOf(Context& context, const Value& a, const Value& b);

constexpr bool Satisfies(Order order, Comparison comparison) {
    switch (comparison) {
        case Comparison::Equal:
            return order == Order::Equal;
        case Comparison::NotEqual:
            return order != Order::Equal;
        case Comparison::Less:
            return order == Order::Less;
        case Comparison::Greater:
            return order == Order::Greater;
        case Comparison::LessOrEqual:
            return order == Order::Less || order == Order::Equal;
        case Comparison::GreaterOrEqual:
            return order == Order::Greater || order == Order::Equal;
    }
    return false;
}

/// A Boolean, or Null when a side is Null.
Value Compare(Context& context, Comparison comparison, const Value& a, const Value& b);

/// The same for a condition: false when a side is Null.
inline bool Holds(Context& context, Comparison comparison, const Value& a, const Value& b) {
    const Order order = OrderOf(context, a, b);
    return order != Order::Unordered && Satisfies(order, comparison);
}

/// The operator Is; 424 when a side is no object.
bool IsSame(const Value& a, const Value& b);

}  // namespace tessaloom::vbscript
