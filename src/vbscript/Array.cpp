#include "vbscript/Array.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace tessaloom::vbscript {

namespace {

/// The number of elements; 9 for a bound below -1, 7 for more than any memory holds.
std::size_t CountOf(std::span<const int> upperBounds) {
    if (upperBounds.empty()) return 0;
    constexpr std::int64_t Most = std::numeric_limits<std::int32_t>::max();
    std::int64_t count = 1;
    for (const int bound : upperBounds) {
        if (bound < -1) Fail(ErrorCode::SubscriptOutOfRange);
        count *= std::int64_t{bound} + 1;
        if (count > Most) Fail(ErrorCode::OutOfMemory);
    }
    return static_cast<std::size_t>(count);
}

}  // namespace

Ref<Array> Array::OfBounds(std::span<const int> upperBounds, bool fixed) {
    if (upperBounds.size() > MaxRank) Fail(ErrorCode::SubscriptOutOfRange);
    const Ref<Array> array(new Array);
    array->SetBounds(upperBounds, CountOf(upperBounds));
    array->fixed_ = fixed;
    return array;
}

Ref<Array> Array::OfCount(std::size_t count) {
    if (count > std::numeric_limits<std::int32_t>::max()) Fail(ErrorCode::OutOfMemory);
    const int bound = static_cast<int>(count) - 1;
    const Ref<Array> array(new Array);
    array->SetBounds({&bound, 1}, count);
    return array;
}

Ref<Array> Array::OfBytes(std::string_view bytes) {
    const Ref<Array> array = OfCount(bytes.size());
    InStretches(bytes.size(), [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i)
            array->elements_[i] = Value::OfByte(static_cast<std::uint8_t>(bytes[i]));
    });
    array->holdsBytes_ = true;
    return array;
}

Ref<Array> Array::OfValues(std::span<const Value> values) {
    const Ref<Array> array = OfCount(values.size());
    array->Assign(values);
    return array;
}

Ref<Array> Array::OfValues(BudgetVector<Value>&& values) {
    const Ref<Array> array = OfCount(0);
    array->elements_ = std::move(values);
    array->upperBounds_ = {static_cast<int>(array->elements_.size()) - 1};
    array->lineCount_ = static_cast<std::uint32_t>(array->elements_.size());
    return array;
}

int Array::UpperBound(int dimension) const {
    if (dimension < 1 || dimension > Rank()) Fail(ErrorCode::SubscriptOutOfRange);
    return upperBounds_[static_cast<std::size_t>(dimension) - 1];
}

Value& Array::At(std::span<const int> indexes) {
    if (indexes.empty() || indexes.size() != upperBounds_.size()) Fail(ErrorCode::SubscriptOutOfRange);
    std::size_t place = 0;
    for (std::size_t i = indexes.size(); i-- > 0;) {
        if (indexes[i] < 0 || indexes[i] > upperBounds_[i]) Fail(ErrorCode::SubscriptOutOfRange);
        place =
            place * (static_cast<std::size_t>(upperBounds_[i]) + 1) + static_cast<std::size_t>(indexes[i]);
    }
    return elements_[place];
}

Ref<Array> Array::Clone() const {
    const Ref<Array> copy(new Array);
    copy->SetBounds(upperBounds_, elements_.size());
    copy->Assign(elements_);
    copy->holdsBytes_ = holdsBytes_;
    return copy;
}

/// What is cut off ends last: that may run script code, which looks at this array or lets go of it.
void Array::SetBounds(std::span<const int> upperBounds, std::size_t count) {
    BudgetVector<Value> dropped;
    if (count > elements_.size())
        Grow(count);
    else
        dropped = CutOff(count);
    holdsBytes_ = false;
    upperBounds_.assign(upperBounds.begin(), upperBounds.end());
    lineCount_ = upperBounds.size() == 1 ? static_cast<std::uint32_t>(count) : 0;
}

/// What `values` hold, as an assignment stores it; there are as many elements.
void Array::Assign(std::span<const Value> values) {
    InStretches(values.size(), [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) elements_[i] = values[i].Assigned();
    });
}

void Array::Grow(std::size_t count) {
    try {
        elements_.resize(count);  // with room for more, where there is memory for that
    } catch (const RuntimeError&) {
        elements_.reserve(count);
        elements_.resize(count);
    }
}

/// What was cut off. Only the smaller part is moved, so that a script that is short of memory can make room.
BudgetVector<Value> Array::CutOff(std::size_t count) {
    const auto moved = [](auto begin, auto end) {
        return BudgetVector<Value>(std::make_move_iterator(begin), std::make_move_iterator(end));
    };
    const auto cut = elements_.begin() + static_cast<std::ptrdiff_t>(count);
    if (elements_.capacity() / 2 > count) {
        BudgetVector<Value> kept = moved(elements_.begin(), cut);
        elements_.swap(kept);
        return kept;
    }
    BudgetVector<Value> dropped = moved(cut, elements_.end());
    elements_.resize(count);
    return dropped;
}

void Redimension(Value& variable, std::span<const int> upperBounds, bool preserve) {
    const bool isArray = variable.Is(VarType::Array);
    if (isArray && (variable.AsArray()->IsFixed() || variable.AsArray()->IsLocked()))
        Fail(ErrorCode::ArrayLocked);
    if (preserve && !isArray && !variable.Is(VarType::Empty)) Fail(ErrorCode::TypeMismatch);
    if (!preserve || !isArray || variable.AsArray()->Rank() == 0) {
        variable = Value::OfArray(Array::OfBounds(upperBounds));
        return;
    }
    const auto& bounds = variable.AsArray()->upperBounds_;
    if (bounds.size() != upperBounds.size() ||
        !std::equal(bounds.begin(), bounds.end() - 1, upperBounds.begin()))
        Fail(ErrorCode::SubscriptOutOfRange);
    const std::size_t count = CountOf(upperBounds);
    variable.WritableArray().SetBounds(upperBounds, count);
}

void Erase(Value& variable) {
    if (!variable.Is(VarType::Array)) Fail(ErrorCode::TypeMismatch);
    if (variable.AsArray()->IsLocked()) Fail(ErrorCode::ArrayLocked);
    if (!variable.AsArray()->IsFixed()) {
        variable = Value::OfArray(Array::OfBounds({}));
        return;
    }
    Array& array = variable.WritableArray();
    const Array::Lock lock(array);
    for (Value& element : array.Elements()) element.Clear();
}

}  // namespace tessaloom::vbscript
