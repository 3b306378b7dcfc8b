#pragma once

#include <span>
#include <string_view>

#include "vbscript/Conversions.h"
#include "vbscript/Error.h"
#include "vbscript/Object.h"

namespace tessaloom::vbscript {

/// The arguments of a call, with conversions that throw as the language has it.
class Arguments {
public:
    Arguments(Context& context, std::span<Value> values, CallKind kind = CallKind::Get)
        : context_(context), kind_(kind), values_(values) {}

    Context& GetContext() const { return context_; }
    CallKind Kind() const { return kind_; }
    std::size_t Count() const { return values_.size(); }
    Value& operator[](std::size_t index) const { return values_[index]; }

    /// Given, and not left out between commas.
    bool Has(std::size_t index) const { return index < values_.size() && !values_[index].IsMissing(); }

    /// The argument, in its place replaced by the value of its default member when it is an object.
    const Value& Plain(std::size_t index) const {
        if (values_[index].Is(VarType::Object)) {
            Value scratch;
            values_[index] = Value(PlainValue(context_, values_[index], scratch));
        }
        return values_[index];
    }

    bool IsNull(std::size_t index) const { return Plain(index).Is(VarType::Null); }

    String Text(std::size_t index) const { return ToText(context_, values_[index]); }
    int Long(std::size_t index) const { return ToLong(context_, values_[index]); }
    double Double(std::size_t index) const { return ToDouble(context_, values_[index]); }
    double Date(std::size_t index) const { return ToDate(context_, values_[index]); }
    bool Boolean(std::size_t index) const { return ToBoolean(context_, values_[index]); }

    /// A length or count: error 5 when it is negative.
    std::size_t Length(std::size_t index) const {
        const int length = Long(index);
        if (length < 0) Fail(ErrorCode::InvalidCall);
        return static_cast<std::size_t>(length);
    }

    /// @name Of optional arguments
    /// @{
    String TextOr(std::size_t index, std::u16string_view other) const {
        return Has(index) ? Text(index) : String(other);
    }
    int LongOr(std::size_t index, int other) const { return Has(index) ? Long(index) : other; }
    bool BooleanOr(std::size_t index, bool other) const { return Has(index) ? Boolean(index) : other; }

    /// A whole number from `least` to `most`, else error 5.
    int LongWithin(std::size_t index, int least, int most, int other) const {
        const int whole = LongOr(index, other);
        if (whole < least || whole > most) Fail(ErrorCode::InvalidCall);
        return whole;
    }
    /// @}

    /// What a Let or Set assigns.
    Value& NewValue() const { return values_.back(); }

private:
    Context& context_;
    CallKind kind_;
    std::span<Value> values_;
};

}  // namespace tessaloom::vbscript
