#pragma once

#include <compare>

namespace tessaloom {

/// Names one layer of a canvas.
struct LayerId {
    enum class Kind { Text, Graphic };

    Kind kind = Kind::Text;
    int slot = 0;  ///< 1 .. 100; 0 names none.

    auto operator<=>(const LayerId&) const = default;
};

}  // namespace tessaloom
