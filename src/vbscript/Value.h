#pragma once

#include <cassert>
#include <cstdint>
#include <span>
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
    Value() noexcept : head_(HeadOf(VarType::Empty)), currency_(0) {}

    Value(const Value& other) noexcept : head_(other.head_), currency_(other.currency_) {
        if (IsCounted()) shared_->Retain();
    }
    Value(Value&& other) noexcept : head_(other.head_), currency_(other.currency_) { other.Forget(); }
    ~Value() {
        if (IsCounted()) shared_->Release();
    }

    /// The old content is released after the new one is in place: its end may run script code.
    [[gnu::always_inline]] Value& operator=(const Value& other) noexcept {
        Counted* const old = CountedOrNull();
        if (other.IsCounted()) other.shared_->Retain();
        CopyBits(other);
        if (old) old->Release();
        return *this;
    }
    [[gnu::always_inline]] Value& operator=(Value&& other) noexcept {
        if (this == &other) return *this;
        Counted* const old = CountedOrNull();
        CopyBits(other);
        other.Forget();
        if (old) old->Release();
        return *this;
    }

    void Swap(Value& other) noexcept {
        std::swap(head_, other.head_);
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
        result.Hold(text.Detach());
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

    VarType Type() const { return static_cast<VarType>(head_); }
    bool Is(VarType type) const { return Type() == type; }
    bool IsMissing() const { return Is(VarType::Error) && Whole() == MissingArgument; }
    bool HasObject() const { return head_ == (HeadOf(VarType::Object) | CountedBit); }  ///< Not Nothing.
    bool IsNothing() const { return head_ == HeadOf(VarType::Object); }

    /// @name The payload, of a value that has the right type
    /// @{
    std::int32_t Whole() const { return static_cast<std::int32_t>(currency_); }
    double Real() const { return real_; }
    std::int64_t Currency() const { return currency_; }
    std::u16string_view Text() const { return IsCounted() ? Content()->View() : std::u16string_view(); }
    String AsString() const { return String(Content()); }
    Object* AsObject() const;   ///< Null for Nothing.
    Object& TheObject() const;  ///< Of one that `HasObject`.
    Array* AsArray() const;     ///< Only for reading.
    Value& Target() const { return *reference_; }
    /// @}

    /// The variable behind a reference, else this value itself.
    const Value& Resolved() const { return Is(VarType::Reference) ? *reference_ : *this; }
    Value& Resolved() { return Is(VarType::Reference) ? *reference_ : *this; }

    /// What storing this value in a variable keeps: itself, but a copy of a fixed or locked array.
    Value Assigned() const { return Is(VarType::Array) ? AssignedArray() : *this; }

    /// The array of this variable, made its own first when it is shared.
    Array& WritableArray();

    /// Appends to the text in place; only of a String. Growing is amortised constant time. `bytes` may be a
    /// part of this text.
    void AppendText(const void* bytes, std::size_t count);

    /// The same with several Strings; where there is no room for all, none is appended.
    void AppendTexts(std::span<const Value> tail);

    /// @name Storing plain values in place
    /// @{
    [[gnu::always_inline]] void SetInteger(std::int32_t whole) { Store(VarType::Integer, whole); }
    [[gnu::always_inline]] void SetLong(std::int32_t whole) { Store(VarType::Long, whole); }
    void SetBoolean(bool truth) { Store(VarType::Boolean, truth ? -1 : 0); }
    void SetDouble(double real) {
        if (IsCounted()) Clear();
        head_ = HeadOf(VarType::Double), real_ = real;
    }
    void Clear() {
        Value old;
        Swap(old);
    }
    void MakeEmpty() {
        if (IsCounted())
            Clear();
        else
            head_ = HeadOf(VarType::Empty);
    }

    /// Lets go of what it refers to; a plain value may stay.
    void LetGo() {
        if (IsCounted()) Clear();
    }
    /// @}

private:
    /// The type, and whether the payload is a reference that this value holds. One word, so that a copy reads
    /// what a store has just written without waiting.
    using Head = std::uint32_t;
    static constexpr Head CountedBit = Head{1} << 16;
    static constexpr Head HeadOf(VarType type) { return static_cast<Head>(type); }

    static constexpr std::int32_t MissingArgument = static_cast<std::int32_t>(0x80020004);

    Value(VarType type, std::int32_t whole) noexcept : head_(HeadOf(type)), currency_(whole) {}
    Value(VarType type, double real) noexcept : head_(HeadOf(type)), real_(real) {}
    explicit Value(std::int64_t currency) noexcept : head_(HeadOf(VarType::Currency)), currency_(currency) {}

    bool IsCounted() const { return (head_ & CountedBit) != 0; }
    Counted* CountedOrNull() const { return IsCounted() ? shared_ : nullptr; }

    /// Takes over a reference that the caller holds; null is nothing to hold.
    void Hold(Counted* shared) {
        head_ = HeadOf(Type()) | (shared ? CountedBit : 0);
        shared_ = shared;
    }
    void Forget() { head_ = HeadOf(VarType::Empty); }
    void CopyBits(const Value& other) { head_ = other.head_, currency_ = other.currency_; }
    [[gnu::always_inline]] void Store(VarType type, std::int32_t whole) {
        if (IsCounted()) Clear();
        head_ = HeadOf(type), currency_ = whole;
    }

    StringData* Content() const { return IsCounted() ? static_cast<StringData*>(shared_) : nullptr; }
    Value AssignedArray() const;
    template <typename Change>
    void ChangeText(Change change);

    Head head_;
    union {
        std::int64_t currency_;
        double real_;
        Counted* shared_;
        Value* reference_;
    };
};

static_assert(sizeof(Value) == 16);

}  // namespace tessaloom::vbscript
