#pragma once

#include <memory>
#include <vector>

#include "model/edit/PropertySet.h"

namespace tessaloom {

/// The properties of several things at once. Things that go meanwhile are left out; it exists until the last
/// one has gone.
class JointSet final : public PropertySet {
public:
    /// rows: those to show, which each of the sets has by name. sets: at least one.
    JointSet(std::span<const Property> rows, std::vector<std::unique_ptr<PropertySet>> sets);

    std::span<const Property> Properties() const override { return rows_; }
    bool Exists() const override { return Lead() != nullptr; }
    std::string Get(std::size_t row) const override;
    bool Mixed(std::size_t row) const override;

    /// What came of it last where it was not taken as it is.
    KeyFault Set(std::size_t row, const std::string& text) override;

    /// Each thing gets its own default.
    KeyFault Reset(std::size_t row) override;
    bool IsDefault(std::size_t row) const override;
    bool Relevant(std::size_t row) const override;

    int CanvasSlot() const override { return parts_.back().set->CanvasSlot(); }

    /// That of the thing named last.
    Schedule* ScheduleOf(std::size_t row) const override;
    std::vector<LayerId> Layers() const override;

private:
    struct Part {
        std::unique_ptr<PropertySet> set;
        std::vector<std::size_t> rows;  ///< Where the set has each of the rows.
    };

    const Part* Lead() const;

    /// `act(set, row)` for each thing, with the row as its own set counts.
    template <typename Act>
    KeyFault SetEach(std::size_t row, Act act);

    std::vector<Property> rows_;
    std::vector<Part> parts_;
};

}  // namespace tessaloom
