#include <algorithm>
#include <charconv>

#include "vbscript/Operators.h"
#include "vbscript/PlainOperands.h"

namespace tessaloom::vbscript {

namespace {

template <typename T>
Order Between(T a, T b) {
    return a < b ? Order::Less : a > b ? Order::Greater : Order::Equal;
}

Order BetweenTexts(std::u16string_view a, std::u16string_view b) {
    return static_cast<Order>(CompareText(a, b, false));
}

bool IsText(const Value& value) { return value.Is(VarType::String); }

bool IsReal(const Value& value) { return value.Is(VarType::Double) || IsIntegerOrLong(value); }

double RealOf(const Value& value) { return value.Is(VarType::Double) ? value.Real() : value.Whole(); }

/// A text that `&` may take over without making a new one.
String TextForJoining(Context& context, const Value& value) {
    return value.Is(VarType::Null) ? String() : ToText(context, value);
}

}  // namespace

Order OrderOf(Context& context, const Value& first, const Value& second) {
    if (IsIntegerOrLong(first) && IsIntegerOrLong(second)) return Between(first.Whole(), second.Whole());
    if (IsText(first) && IsText(second)) return BetweenTexts(first.Text(), second.Text());
    if (IsReal(first) && IsReal(second)) return Between(RealOf(first), RealOf(second));
    const PlainOperands of(context, first, second);
    const Value &a = of.a, &b = of.b;
    for (const Value* side : {&a, &b})
        if (side->Is(VarType::Array) || side->Is(VarType::Error)) Fail(ErrorCode::TypeMismatch);
    if (a.Is(VarType::Null) || b.Is(VarType::Null)) return Order::Unordered;
    const bool aIsText = IsText(a) || a.Is(VarType::Empty), bIsText = IsText(b) || b.Is(VarType::Empty);
    if ((IsText(a) && bIsText) || (aIsText && IsText(b)))
        return BetweenTexts(IsText(a) ? a.Text() : std::u16string_view(),
                            IsText(b) ? b.Text() : std::u16string_view());
    // a number is less than any text, whatever the text says
    if (IsText(a)) return Order::Greater;
    if (IsText(b)) return Order::Less;
    if (a.Is(VarType::Currency) && b.Is(VarType::Currency)) return Between(a.Currency(), b.Currency());
    return Between(ToDouble(context, a), ToDouble(context, b));
}

Value Compare(Context& context, Comparison comparison, const Value& a, const Value& b) {
    const Order order = OrderOf(context, a, b);
    return order == Order::Unordered ? Value::Null() : Value::OfBoolean(Satisfies(order, comparison));
}

bool IsSame(const Value& a, const Value& b) {
    if (!a.Is(VarType::Object) || !b.Is(VarType::Object)) Fail(ErrorCode::ObjectRequired);
    return a.AsObject() == b.AsObject();
}

Value Concatenate(Context& context, const Value& first, const Value& second) {
    if (IsText(first) && IsIntegerOrLong(second)) {  // without a text of the number's own
        char digits[12];
        const auto end = std::to_chars(std::begin(digits), std::end(digits), second.Whole()).ptr;
        return Value::OfString(String::JoinedLatin(first.AsString(), {digits, end}));
    }
    const PlainOperands of(context, first, second);
    const Value &a = of.a, &b = of.b;
    if (a.Is(VarType::Null) && b.Is(VarType::Null)) return Value::Null();
    return Value::OfString(String::Joined(TextForJoining(context, a), TextForJoining(context, b)));
}

void AppendTo(Context& context, Value& target, const Value& tail) {
    // the default member of an object may change the target meanwhile
    if (!IsText(target) || &target == &tail || tail.Is(VarType::Object)) {
        target = Concatenate(context, Value(target), tail);
        return;
    }
    const String text = TextForJoining(context, tail);
    target.AppendText(text.Bytes(), text.ByteLength());
}

void AppendTo(Context& context, Value& target, std::span<Value> tail) {
    const bool anyObject =
        std::ranges::any_of(tail, [](const Value& part) { return part.Is(VarType::Object); });
    if (!IsText(target) || anyObject) {  // as above
        Value joined = target;
        for (const Value& part : tail) joined = Concatenate(context, joined, part);
        target = std::move(joined);
        return;
    }
    for (Value& part : tail)
        if (!IsText(part)) part = Value::OfString(TextForJoining(context, part));
    target.AppendTexts(tail);
}

}  // namespace tessaloom::vbscript
