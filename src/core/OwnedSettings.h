#pragma once

#include <type_traits>
#include <utility>

#include "core/SettingsOwner.h"
#include "core/Store.h"

namespace tessaloom {

/// The base of objects whose settings are kept in somebody's document, who is told of every change and
/// outlives them.
class OwnedSettings {
protected:
    explicit OwnedSettings(SettingsOwner& owner) : owner_(owner) {}
    ~OwnedSettings() = default;

    /// Stores `value` in `field`; true when that changed it.
    template <typename T>
    bool Set(T& field, std::type_identity_t<T> value) {
        const bool changed = Store(field, std::move(value));
        if (changed) owner_.SettingChanged();
        return changed;
    }

    /// The same for a value that is first clamped, silently, into `range`.
    template <typename T>
    bool Set(T& field, std::type_identity_t<T> value, Range<std::type_identity_t<T>> range) {
        return Set(field, Clamped(value, range));
    }

    SettingsOwner& owner_;
};

}  // namespace tessaloom
