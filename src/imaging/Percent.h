#pragma once

#include <cmath>

namespace tessaloom {

/// A percentage as 0 .. 255: the product with 2.55, rounded, halves to the even number. 50 gives 127, because
/// the product with the double nearest to 2.55 lies just below 127.5.
inline int To255(int percent) { return static_cast<int>(std::nearbyint(percent * 2.55)); }

}  // namespace tessaloom
