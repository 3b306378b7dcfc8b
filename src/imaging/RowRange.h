#pragma once

#include <algorithm>

namespace tessaloom {

/// Rows of a bitmap as they lie in memory, the end excluded.
struct RowRange {
    int first = 0;
    int end = 0;

    int Count() const { return end - first; }

    /// Makes it the least range that holds both.
    void Include(const RowRange& other) {
        if (other.Count() <= 0) return;
        *this = Count() <= 0 ? other : RowRange{std::min(first, other.first), std::max(end, other.end)};
    }
};

}  // namespace tessaloom
