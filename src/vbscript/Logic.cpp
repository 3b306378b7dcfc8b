#include <algorithm>

#include "vbscript/Operators.h"
#include "vbscript/PlainOperands.h"

namespace tessaloom::vbscript {

namespace {

/// The type in which bits are combined, by how many of them there are.
enum class Width : std::uint8_t { Boolean, Byte, Integer, Long };

/// An operand of a logical operator: its bits, sign-extended.
struct Bits {
    std::int32_t bits = 0;
    Width width = Width::Long;
    bool isNull = false;
};

/// "True" and "False" are as good as numbers here.
Bits BitsOfText(Context& context, const Value& text, bool besideBoolean) {
    const bool isNumber = IsNumeric(context, text);
    if (besideBoolean || !isNumber) return {ToBoolean(context, text) ? -1 : 0, Width::Boolean};
    return {ToLong(context, text)};
}

Bits BitsOf(Context& context, const Value& value, const Value& beside) {
    switch (value.Type()) {
        case VarType::Null:
            return {0, Width::Boolean, true};
        case VarType::Empty:
            return {0, Width::Integer};
        case VarType::Boolean:
            return {value.Whole(), Width::Boolean};
        case VarType::Byte:
            return {value.Whole(), Width::Byte};
        case VarType::Integer:
            return {value.Whole(), Width::Integer};
        case VarType::String:
            return BitsOfText(context, value, beside.Is(VarType::Boolean));
        default:
            return {ToLong(context, value)};
    }
}

Value OfBits(std::int32_t bits, Width width) {
    switch (width) {
        case Width::Boolean:
            return Value::OfBoolean(bits != 0);
        case Width::Byte:
            return Value::OfByte(static_cast<std::uint8_t>(bits));
        case Width::Integer:
            return Value::OfInteger(static_cast<std::int16_t>(bits));
        case Width::Long:
            break;
    }
    return Value::OfLong(bits);
}

/// Booleans and Bytes meet as Integers.
Width Meeting(const Bits& a, const Bits& b) {
    if (a.isNull) return b.width;
    if (b.isNull || a.width == b.width) return a.width;
    return std::max({a.width, b.width, Width::Integer});
}

/// What the operator is on bits, and on a known operand beside a Null one (on either side).
struct Operator {
    std::int32_t (*combine)(std::int32_t a, std::int32_t b);

    /// Whether the known operand decides alone, with the result in `bits`.
    bool (*decides)(std::int32_t known, bool isFirst, std::int32_t& bits);
};

Value Combine(Context& context, const Value& first, const Value& second, const Operator& with) {
    if (first.Is(VarType::Boolean) && second.Is(VarType::Boolean))
        return Value::OfBoolean(with.combine(first.Whole(), second.Whole()) != 0);
    if (first.Is(VarType::Integer) && second.Is(VarType::Integer))
        return Value::OfInteger(with.combine(first.Whole(), second.Whole()));
    const PlainOperands of(context, first, second);
    const Bits x = BitsOf(context, of.a, of.b), y = BitsOf(context, of.b, of.a);
    const Width width = Meeting(x, y);
    if (!x.isNull && !y.isNull) return OfBits(with.combine(x.bits, y.bits), width);
    if (x.isNull && y.isNull) return Value::Null();
    std::int32_t bits = x.isNull ? y.bits : x.bits;
    return with.decides(bits, y.isNull, bits) ? OfBits(bits, width) : Value::Null();
}

bool NeverDecides(std::int32_t, bool, std::int32_t&) { return false; }

}  // namespace

Value And(Context& context, const Value& a, const Value& b) {
    return Combine(context, a, b,
                   {[](std::int32_t x, std::int32_t y) { return x & y; },
                    [](std::int32_t known, bool, std::int32_t&) { return known == 0; }});
}

Value Or(Context& context, const Value& a, const Value& b) {
    return Combine(context, a, b,
                   {[](std::int32_t x, std::int32_t y) { return x | y; },
                    [](std::int32_t known, bool, std::int32_t&) { return known != 0; }});
}

Value Xor(Context& context, const Value& a, const Value& b) {
    return Combine(context, a, b, {[](std::int32_t x, std::int32_t y) { return x ^ y; }, NeverDecides});
}

Value Eqv(Context& context, const Value& a, const Value& b) {
    return Combine(context, a, b, {[](std::int32_t x, std::int32_t y) { return ~(x ^ y); }, NeverDecides});
}

Value Imp(Context& context, const Value& a, const Value& b) {
    return Combine(context, a, b,
                   {[](std::int32_t x, std::int32_t y) { return ~x | y; },
                    [](std::int32_t known, bool isFirst, std::int32_t& bits) {
                        if (!isFirst) return known != 0;
                        bits = -1;
                        return known == 0;
                    }});
}

Value Not(Context& context, const Value& operand) {
    if (operand.Is(VarType::Boolean)) return Value::OfBoolean(operand.Whole() == 0);
    Value scratch;
    const Value& value = PlainValue(context, operand, scratch);
    const Bits bits = BitsOf(context, value, value);
    return bits.isNull ? Value::Null() : OfBits(~bits.bits, bits.width);
}

}  // namespace tessaloom::vbscript
