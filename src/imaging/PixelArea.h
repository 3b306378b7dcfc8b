#pragma once

#include <algorithm>

namespace tessaloom {

/// A rectangle of a bitmap, the ends excluded; rows count as they lie in memory, from the bottom.
struct PixelArea {
    int left = 0, right = 0;
    int first = 0, end = 0;

    int Width() const { return right - left; }
    int Height() const { return end - first; }
    bool Empty() const { return Width() <= 0 || Height() <= 0; }

    /// Makes it the least area that holds both.
    void Include(const PixelArea& other) {
        if (other.Empty()) return;
        *this = Empty() ? other
                        : PixelArea{std::min(left, other.left), std::max(right, other.right),
                                    std::min(first, other.first), std::max(end, other.end)};
    }
};

}  // namespace tessaloom
