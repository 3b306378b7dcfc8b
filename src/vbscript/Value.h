#pragma once

#include <cassert>
#include <cstdint>
#include <utility>

#include "vbscript/Ref.h"
#include "vbscript/String.h"
#include "vbscript/VarType.h"

namespace tessaloom::vbscript {

class Array;
class Object;

/// A value of the language: 16 bytes, a type and a payload.
///
/// Byte, Integer, Long, Boolean (-1 or 0) and Error share one payload, `Whole()`; Single, Double and Date
/// share `Real()` (a Single is a double that a float holds exactly); strings, objects and arrays are counted
/// references. Copying a value shares an array: what an assignment stores is `Assigned()`, and whoever
/// writes to an element first asks for `WritableArray()`.
class Value {
public:
    Value() noexcept : type_(VarType::Empty), counted_(false), currency_(0) {}

    Value(const Value& other) noexcept
        : type_(other.type_), counted_(other.counted_), currency_(other.currency_) {
        if (counted_) shared_->Retain();
    }
    Value(Value&& other) noexcept : type_(other.type_), counted_(other.counted_), currency_(other.currency_) {
        other.Forget();
    }
    ~Value() {
        if (counted_) shared_->Release();
    }

    /// The old content is released after the new one is in place: its end may run script code.
    Value& operator=(const Value& other) noexcept {
        if (counted_ || other.counted_) {
            Value copy(other);
            Swap(copy);
        } else {
            CopyBits(other);
        }
        return *this;
    }
    Value& operator=(Value&& other) noexcept {
        if (counted_) {
            Value taken(std::move(other));
            Swap(taken);
        } else if (this != &other) {
            CopyBits(other);
            other.Forget();
        }
        return *this;
    }

    void Swap(Value& other) noexcept {
        std::swap(type_, other.type_);
        std::swap(counted_, other.counted_);
        std::swap(currency_, other.currency_);
    }

    /// @name Making values
    /// @{
    static Value Null() { return Value(VarType::Null, std::int32_t{0}); }
    static Value Nothing() { return Value(VarType::Object, std::int32_t{0}); }
    static Value Missing() { return OfError(MissingArgument); }
    static Value OfInteger(std::int32_t whole) { return Value(VarType::Integer, whole); }
    static Value OfLong(std::int32_t whole) { return Value(VarType::Long, whole); }
    static Value OfByte(std::uint8_t whole) { return Value(VarType::Byte, std::int32_t{whole}); }
    static Value OfBoolean(bool truth) {
        return Value(VarType::Boolean, truth ? std::int32_t{-1} : std::int32_t{0});
    }
    static Value OfError(std::int32_t code) { return Value(VarType::Error, code); }
    static Value OfSingle(float real) { return Value(VarType::Single, double{real}); }
    static Value OfDouble(double real) { return Value(VarType::Double, real); }
    static Value OfDate(double moment) { return Value(VarType::Date, moment); }
    static Value OfCurrency(std::int64_t tenThousandths) { return Value(tenThousandths); }
    static Value OfString(String text) {
        Value result(VarType::String, std::int32_t{0});
        result.shared_ = text.Detach();
        result.counted_ = result.shared_ != nullptr;
        return result;
    }
    static Value OfText(std::u16string_view text) { return OfString(String(text)); }
    static Value OfUtf8(std::string_view text) { return OfString(String::OfUtf8(text)); }
    static Value OfObject(Object* object);  ///< Null is Nothing.
    template <typename T>
    static Value OfObject(const Ref<T>& object) {
        return OfObject(static_cast<Object*>(object.Get()));
    }
    static Value OfArray(Array* array);  ///< Not null.
    static Value OfArray(const Ref<Array>& array) { return OfArray(array.Get()); }
    static Value ReferenceTo(Value& variable) {
        Value result(VarType::Reference, std::int32_t{0});
        result.reference_ = &variable;
        return result;
    }
    /// @}

    VarType Type() const { return type_; }
    bool Is(VarType type) const { return type_ == type; }
    bool IsMissing() const { return type_ == VarType::Error && Whole() == MissingArgument; }
    bool IsNothing() const { return type_ == VarType::Object && !counted_; }

    /// @name The payload, of a value that has the right type
    /// @{
    std::int32_t Whole() const { return static_cast<std::int32_t>(currency_); }
    double Real() const { return real_; }
    std::int64_t Currency() const { return currency_; }
    std::u16string_view Text() const { return counted_ ? Content()->View() : std::u16string_view(); }
    String AsString() const { return String(Content()); }
    Object* AsObject() const;  ///< Null for Nothing.
    Array* AsArray() const;    ///< Only for reading.
    Value& Target() const { return *reference_; }
    /// @}

    /// The variable behind a reference, else this value itself.
    const Value& Resolved() const { return type_ == VarType::Reference ? *reference_ : *this; }
    Value& Resolved() { return type_ == VarType::Reference ? *reference_ : *this; }

    /// What storing this value in a variable keeps: itself, but a copy of a fixed or locked array.
    Value Assigned() const { return type_ == VarType::Array ? AssignedArray() : *this; }

    /// The array of this variable, made its own first when it is shared.
    Array& WritableArray();

    /// Appends to the text in place; only of a String. Growing is amortised constant time. `bytes` may be a
    /// part of this text.
    void AppendText(const void* bytes, std::size_t count);

    /// @name Storing plain values in place
    /// @{
    void SetInteger(std::int32_t whole) { Store(VarType::Integer, whole); }
    void SetLong(std::int32_t whole) { Store(VarType::Long, whole); }
    void SetBoolean(bool truth) { Store(VarType::Boolean, truth ? -1 : 0); }
    void SetDouble(double real) {
        if (counted_) Clear();
        type_ = VarType::Double, real_ = real;
    }
    void Clear() {
        Value old;
        Swap(old);
    }
    void MakeEmpty() {
        if (counted_)
            Clear();
        else
            type_ = VarType::Empty;
    }

    /// Lets go of what it refers to; a plain value may stay.
    void LetGo() {
        if (counted_) Clear();
    }
    /// @}

private:
    static constexpr std::int32_t MissingArgument = static_cast<std::int32_t>(0x80020004);

    Value(VarType type, std::int32_t whole) noexcept : type_(type), counted_(false), currency_(whole) {}
    Value(VarType type, double real) noexcept : type_(type), counted_(false), real_(real) {}
    explicit Value(std::int64_t currency) noexcept
        : type_(VarType::Currency), counted_(false), currency_(currency) {}

    void Forget() { type_ = VarType::Empty, counted_ = false; }
    void CopyBits(const Value& other) {
        type_ = other.type_, counted_ = other.counted_, currency_ = other.currency_;
    }
    void Store(VarType type, std::int32_t whole) {
        if (counted_) Clear();
        type_ = type, currency_ = whole;
    }

    StringData* Content() const { return counted_ ? static_cast<StringData*>(shared_) : nullptr; }
    Value AssignedArray() const;

    VarType type_;
    bool counted_;  ///< The payload is a reference that this value holds.
    union {
        std::int64_t currency_;
        double real_;
        Counted* shared_;
        Value* reference_;
    };
};

static_assert(sizeof(Value) == 16);

}  // namespace tessaloom::vbscript
