#pragma once

#include <array>
#include <span>
#include <string_view>

#include "vbscript/Error.h"
#include "vbscript/MemoryBudget.h"
#include "vbscript/Value.h"

namespace tessaloom::vbscript {

/// An array of any rank; the lower bound of every dimension is 0, the first index runs fastest.
///
/// Values share it until one of them is written to (see `Value::WritableArray`). All failures are thrown as
/// RuntimeError: 9 for an index outside, 10 when it is fixed or locked, 7 above the memory budget.
class Array final : public Counted {
public:
    static constexpr int MaxRank = 60;

    /// Of Empty elements. `upperBounds` are -1 or more, one for each dimension; none at all is the array of
    /// `Dim a()`, which has no dimension yet.
    static Ref<Array> OfBounds(std::span<const int> upperBounds, bool fixed = false);

    /// Of one dimension with `count` Empty elements.
    static Ref<Array> OfCount(std::size_t count);

    /// Of one dimension with elements of the kind Byte; how binary data comes from outside.
    static Ref<Array> OfBytes(std::string_view bytes);

    static Ref<Array> OfValues(std::span<const Value> values);
    static Ref<Array> OfValues(BudgetVector<Value>&& values);  ///< Takes them over.

    int Rank() const { return static_cast<int>(upperBounds_.size()); }

    /// `dimension` counts from 1; 9 when there is no such dimension.
    int UpperBound(int dimension) const;

    std::size_t Count() const { return elements_.size(); }
    std::span<const Value> Elements() const { return elements_; }
    std::span<Value> Elements() { return elements_; }

    /// The only element index of an array of one dimension.
    Value& At(int index) {
        if (static_cast<unsigned>(index) >= lineCount_) Fail(ErrorCode::SubscriptOutOfRange);
        return elements_[static_cast<unsigned>(index)];
    }
    Value& At(std::span<const int> indexes);

    /// Made by `OfBytes` and never given other bounds since; scripts see it as an array of Byte.
    bool HoldsBytes() const { return holdsBytes_; }

    bool IsFixed() const { return fixed_; }
    bool IsLocked() const { return locks_ > 0; }

    /// Held by more than one variable: each lock holds a reference that counts for no variable.
    bool IsShared() const { return References() > 1 + locks_; }

    Ref<Array> Clone() const;  ///< Neither fixed nor locked.

    /// While it lives, the array stays, and no one may change its bounds.
    class Lock {
    public:
        explicit Lock(Array& array) : array_(&array) { ++array_->locks_; }
        ~Lock() { --array_->locks_; }
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;
        Array& operator*() const { return *array_; }
        Array* operator->() const { return array_.Get(); }

    private:
        Ref<Array> array_;
    };

private:
    friend void Redimension(Value& variable, std::span<const int> upperBounds, bool preserve);

    Array() = default;
    void Assign(std::span<const Value> values);
    void Grow(std::size_t count);
    void SetBounds(std::span<const int> upperBounds, std::size_t count);
    BudgetVector<Value> CutOff(std::size_t count);

    BudgetVector<int> upperBounds_;
    BudgetVector<Value> elements_;
    std::uint32_t lineCount_ = 0;  ///< The number of elements when there is one dimension, else 0.
    std::uint32_t locks_ = 0;
    bool fixed_ = false;
    bool holdsBytes_ = false;
};

/// What ReDim does to a variable: Empty and arrays take the new bounds, anything else is error 13. With
/// `preserve` only the last bound may differ (else 9), and the elements inside both stay.
void Redimension(Value& variable, std::span<const int> upperBounds, bool preserve);

/// What Erase does: the elements of a fixed array become Empty, a dynamic one loses its dimensions.
void Erase(Value& variable);

inline Array* Value::AsArray() const { return static_cast<Array*>(shared_); }

inline Value Value::OfArray(Array* array) {
    Value result(VarType::Array, std::int32_t{0});
    array->Retain();
    result.Hold(array);
    return result;
}

inline Array& Value::WritableArray() {
    if (AsArray()->IsShared()) *this = OfArray(AsArray()->Clone());
    return *AsArray();
}

}  // namespace tessaloom::vbscript
