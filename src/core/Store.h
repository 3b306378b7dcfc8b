#pragma once

#include <type_traits>
#include <utility>

namespace tessaloom {

/// Both ends belong to the range.
template <typename T>
struct Range {
    T low, high;
};

/// `value` moved to the nearer end of `range` when it lies outside. A number that is not one becomes the low
/// end.
template <typename T>
constexpr T Clamped(T value, Range<std::type_identity_t<T>> range) {
    if (!(value >= range.low)) return range.low;
    return value > range.high ? range.high : value;
}

/// Stores `value` in `field`; true when that changed it. The caller sets its own flag.
template <typename T>
[[nodiscard]] bool Store(T& field, std::type_identity_t<T> value) {
    if (field == value) return false;
    field = std::move(value);
    return true;
}

/// The same for a value that is first clamped, silently, into `range`.
template <typename T>
[[nodiscard]] bool Store(T& field, std::type_identity_t<T> value, Range<std::type_identity_t<T>> range) {
    return Store(field, Clamped(value, range));
}

}  // namespace tessaloom
