#include "model/edit/PropertySet.h"

#include "core/modNumbers.h"

namespace tessaloom {

namespace {

/// "1" and "1.0" are one value.
bool SameValue(std::string_view a, std::string_view b) {
    double first = 0, second = 0;
    return a == b || (modNumbers::TryDblNI(a, first) && modNumbers::TryDblNI(b, second) && first == second);
}

bool Listed(std::string_view value, std::string_view list) {
    while (!list.empty()) {
        const std::size_t comma = list.find(',');
        if (list.substr(0, comma) == value) return true;
        list = comma == list.npos ? std::string_view() : list.substr(comma + 1);
    }
    return false;
}

}  // namespace

KeyFault PropertySet::Reset(std::size_t row) { return Set(row, std::string(Properties()[row].fallback)); }

bool PropertySet::IsDefault(std::size_t row) const { return SameValue(Get(row), Properties()[row].fallback); }

bool PropertySet::Relevant(std::size_t row) const {
    const Property& property = Properties()[row];
    const auto other = property.relevantIf.empty() ? std::nullopt : Find(property.relevantIf);
    return !other || Listed(Get(*other), property.relevantValues);
}

std::optional<std::size_t> PropertySet::Find(std::string_view name) const {
    const auto properties = Properties();
    for (std::size_t row = 0; row < properties.size(); ++row)
        if (properties[row].name == name) return row;
    return std::nullopt;
}

}  // namespace tessaloom
