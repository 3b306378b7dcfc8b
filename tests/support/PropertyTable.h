#pragma once

#include "core/SettingsOwner.h"
#include "support/Testing.h"

namespace tessaloom::testing {

/// Counts what an object tells the document that owns it.
class CountingOwner final : public SettingsOwner {
public:
    void SettingChanged() override { ++changes; }

    int changes = 0;
};

/// What every stored property of an engine object must do; one row for each in a test.
template <typename Object>
struct Property {
    std::string name;
    std::function<void(Object&, CountingOwner&)> check;
};

/// A number that starts at `initial` and is clamped to `low` .. `high`; each real change is told once.
template <typename Object, auto Get, auto Set>
Property<Object> Number(std::string name, double initial, double low, double high) {
    return {std::move(name), [=](Object& object, CountingOwner& owner) {
                using Value = std::decay_t<decltype((object.*Get)())>;
                const auto get = [&] { return static_cast<double>((object.*Get)()); };
                const auto expectSet = [&](double value, double stored) {
                    const int told = owner.changes + (get() == stored ? 0 : 1);
                    (object.*Set)(static_cast<Value>(value));
                    EXPECT_DOUBLE_EQ(get(), stored) << "after setting " << value;
                    EXPECT_EQ(owner.changes, told) << "after setting " << value;
                };
                EXPECT_DOUBLE_EQ(get(), initial) << "initially";
                for (const double end : {low, high}) {
                    expectSet(end, end);
                    expectSet(end + (end == low ? -1 : 1), end);
                }
            }};
}

/// A text or a switch that starts at `initial`; a change is told, the same value again is not.
template <typename Object, auto Get, auto Set, typename Value>
Property<Object> Plain(std::string name, Value initial, Value other) {
    return {std::move(name), [=](Object& object, CountingOwner& owner) {
                EXPECT_EQ((object.*Get)(), initial) << "initially";
                const int before = owner.changes;
                (object.*Set)(other);
                EXPECT_EQ((object.*Get)(), other);
                (object.*Set)(other);
                EXPECT_EQ(owner.changes, before + 1);
            }};
}

template <typename Object>
void CheckProperties(Object& object, CountingOwner& owner, std::span<const Property<Object>> rows) {
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        row.check(object, owner);
    }
}

}  // namespace tessaloom::testing
