#pragma once

#include <array>
#include <cstddef>

#include "model/edit/Property.h"

namespace tessaloom {

/// The rows with the defaults that the tables of keys give. A row without a key does not compile.
template <std::size_t Size, typename... Keys>
consteval std::array<Property, Size> WithDefaults(const Property (&rows)[Size], const Keys&... keys) {
    std::array<Property, Size> table{};
    for (std::size_t row = 0; row < Size; ++row) {
        table[row] = rows[row];
        bool found = false;
        const auto look = [&](const auto& tableOfKeys) {
            for (const auto& key : tableOfKeys)
                if (key.name == rows[row].name) {
                    table[row].fallback = key.fallback;
                    found = true;
                }
        };
        (look(keys), ...);
        if (!found) throw "a property without a key";
    }
    return table;
}

}  // namespace tessaloom
