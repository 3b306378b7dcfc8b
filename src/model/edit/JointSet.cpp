#include "model/edit/JointSet.h"

#include <algorithm>
#include <utility>

namespace tessaloom {

JointSet::JointSet(std::span<const Property> rows, std::vector<std::unique_ptr<PropertySet>> sets)
    : rows_(rows.begin(), rows.end()) {
    for (auto& set : sets) {
        Part part{std::move(set), {}};
        for (const Property& row : rows_) part.rows.push_back(part.set->Find(row.name).value());
        parts_.push_back(std::move(part));
    }
    const auto fallback = [&](const Part& part, std::size_t row) {
        return part.set->Properties()[part.rows[row]].fallback;
    };
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        const std::string_view first = fallback(parts_.front(), row);
        const bool alike =
            std::ranges::all_of(parts_, [&](const Part& part) { return fallback(part, row) == first; });
        rows_[row].fallback = alike ? first : std::string_view();
    }
}

const JointSet::Part* JointSet::Lead() const {
    for (auto part = parts_.rbegin(); part != parts_.rend(); ++part)
        if (part->set->Exists()) return &*part;
    return nullptr;
}

std::string JointSet::Get(std::size_t row) const {
    const Part* const lead = Lead();
    return lead ? lead->set->Get(lead->rows.at(row)) : std::string();
}

bool JointSet::Mixed(std::size_t row) const {
    const std::string value = Get(row);
    return std::ranges::any_of(parts_, [&](const Part& part) {
        return part.set->Exists() && part.set->Get(part.rows.at(row)) != value;
    });
}

template <typename Act>
KeyFault JointSet::SetEach(std::size_t row, Act act) {
    KeyFault last = KeyFault::None;
    for (const Part& part : parts_)
        if (const KeyFault fault = act(*part.set, part.rows.at(row)); fault != KeyFault::None) last = fault;
    return last;
}

KeyFault JointSet::Set(std::size_t row, const std::string& text) {
    return SetEach(row, [&](PropertySet& set, std::size_t own) { return set.Set(own, text); });
}

KeyFault JointSet::Reset(std::size_t row) {
    return SetEach(row, [](PropertySet& set, std::size_t own) { return set.Reset(own); });
}

bool JointSet::IsDefault(std::size_t row) const {
    return std::ranges::all_of(parts_, [&](const Part& part) {
        return !part.set->Exists() || part.set->IsDefault(part.rows.at(row));
    });
}

bool JointSet::Relevant(std::size_t row) const {
    return std::ranges::any_of(parts_, [&](const Part& part) {
        return part.set->Exists() && part.set->Relevant(part.rows.at(row));
    });
}

Schedule* JointSet::ScheduleOf(std::size_t row) const {
    const Part* const lead = Lead();
    return lead ? lead->set->ScheduleOf(lead->rows.at(row)) : nullptr;
}

std::vector<LayerId> JointSet::Layers() const {
    std::vector<LayerId> layers;
    for (const Part& part : parts_)
        for (const LayerId layer : part.set->Layers()) layers.push_back(layer);
    return layers;
}

}  // namespace tessaloom
