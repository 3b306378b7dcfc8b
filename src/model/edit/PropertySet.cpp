#include "model/edit/PropertySet.h"

namespace tessaloom {

std::optional<std::size_t> PropertySet::Find(std::string_view name) const {
    const auto properties = Properties();
    for (std::size_t row = 0; row < properties.size(); ++row)
        if (properties[row].name == name) return row;
    return std::nullopt;
}

}  // namespace tessaloom
