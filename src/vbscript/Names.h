#pragma once

#include <cstdint>
#include <deque>
#include <string_view>

#include "vbscript/MemoryBudget.h"

namespace tessaloom::vbscript {

/// The number of a name; names that differ only in case have the same one.
using NameId = std::uint32_t;

inline constexpr NameId NoName = ~NameId{0};

/// All names of an engine: keywords, variables, procedures, members. Each keeps its first spelling.
class Names {
public:
    /// The first numbers are those of `Keywords` (Token.h), in their order.
    Names();

    static constexpr std::size_t Longest = 255;  ///< Units; no name of a program is longer.

    NameId Intern(std::u16string_view name);
    NameId Find(std::u16string_view name) const;  ///< `NoName` when it never occurred.
    std::u16string_view Spelling(NameId id) const { return entries_[id].spelling; }
    std::size_t Count() const { return entries_.size(); }

private:
    struct Entry {
        BudgetUnits spelling;
        std::size_t hash;
    };

    static std::size_t HashOf(std::u16string_view name);
    std::size_t PlaceOf(std::u16string_view name, std::size_t hash) const;
    void Grow();

    std::deque<Entry, BudgetAllocator<Entry>> entries_;
    BudgetVector<NameId> table_;  ///< Open addressing; a power of two.
};

}  // namespace tessaloom::vbscript
