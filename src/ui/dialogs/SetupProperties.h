#pragma once

#include "model/edit/PropertySet.h"

namespace tessaloom {

struct Platform;

/// What people set of the whole program: those of the `Setup` values that are no places of windows. They take
/// effect at once and reach the settings file when the program ends.
class SetupProperties final : public PropertySet {
public:
    explicit SetupProperties(const Platform& platform) : platform_(platform) {}

    std::span<const Property> Properties() const override;
    bool Exists() const override { return true; }
    std::string Get(std::size_t row) const override;
    KeyFault Set(std::size_t row, const std::string& text) override;
    Schedule* ScheduleOf(std::size_t) const override { return nullptr; }

private:
    const Platform& platform_;
};

}  // namespace tessaloom
