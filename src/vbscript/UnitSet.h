#pragma once

#include <algorithm>
#include <bitset>
#include <cstdint>
#include <utility>

#include "vbscript/MemoryBudget.h"

namespace tessaloom::vbscript {

/// A set of UTF-16 units, as a character class of a pattern names it.
class UnitSet {
public:
    bool Contains(char16_t unit) const {
        if (unit < Low) return low_[unit];
        const auto after = std::ranges::upper_bound(ranges_, unit, {}, &Range::first);
        return after != ranges_.begin() && std::prev(after)->second >= unit;
    }

    void Add(char16_t first, char16_t last) {
        for (std::uint32_t unit = first; unit <= last && unit < Low; ++unit) low_[unit] = true;
        if (last >= Low) ranges_.emplace_back(std::max(first, static_cast<char16_t>(Low)), last);
    }
    void Add(const UnitSet& other) {
        low_ |= other.low_;
        ranges_.insert(ranges_.end(), other.ranges_.begin(), other.ranges_.end());
    }

    /// To be called once, when all is added and before `Contains`.
    void Finish() {
        std::ranges::sort(ranges_);
        BudgetVector<Range> joined;
        for (const Range& range : ranges_) {
            if (!joined.empty() && std::uint32_t{range.first} <= std::uint32_t{joined.back().second} + 1)
                joined.back().second = std::max(joined.back().second, range.second);
            else
                joined.push_back(range);
        }
        ranges_ = std::move(joined);
    }

    /// Every unit that is not in this finished set.
    UnitSet Complement() const {
        UnitSet result;
        result.low_ = ~low_;
        std::uint32_t next = Low;
        for (const Range& range : ranges_) {
            if (range.first > next) result.Add(static_cast<char16_t>(next), range.first - 1);
            next = std::uint32_t{range.second} + 1;
        }
        if (next <= 0xFFFF) result.Add(static_cast<char16_t>(next), 0xFFFF);
        return result;
    }

private:
    using Range = std::pair<char16_t, char16_t>;
    static constexpr std::uint32_t Low = 256;  ///< Units below have a bit each.

    std::bitset<Low> low_;
    BudgetVector<Range> ranges_;
};

}  // namespace tessaloom::vbscript
