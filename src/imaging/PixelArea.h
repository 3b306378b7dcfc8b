#pragma once

#include <algorithm>
#include <cstdint>

namespace tessaloom {

/// A rectangle of a bitmap, the ends excluded; rows count as they lie in memory, from the bottom.
struct PixelArea {
    int left = 0, right = 0;
    int first = 0, end = 0;

    /// All of a bitmap.
    static PixelArea Of(int width, int height) { return {0, width, 0, height}; }

    bool operator==(const PixelArea&) const = default;

    int Width() const { return right - left; }
    int Height() const { return end - first; }
    bool Empty() const { return Width() <= 0 || Height() <= 0; }
    std::int64_t Pixels() const { return Empty() ? 0 : std::int64_t{Width()} * Height(); }

    /// Makes it the least area that holds both.
    void Include(const PixelArea& other) {
        if (other.Empty()) return;
        *this = Empty() ? other
                        : PixelArea{std::min(left, other.left), std::max(right, other.right),
                                    std::min(first, other.first), std::max(end, other.end)};
    }

    /// What lies in both; may be empty.
    PixelArea Common(const PixelArea& other) const {
        return {std::max(left, other.left), std::min(right, other.right), std::max(first, other.first),
                std::min(end, other.end)};
    }

    bool Holds(const PixelArea& other) const {
        return other.Empty() ||
               (left <= other.left && right >= other.right && first <= other.first && end >= other.end);
    }
};

}  // namespace tessaloom
