#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace tessaloom::vbscript {

/// The number of a name; names that differ only in case have the same one.
using NameId = std::uint32_t;

inline constexpr NameId NoName = ~NameId{0};

/// All names of an engine: keywords, variables, procedures, members. Each keeps its first spelling.
class Names {
public:
    /// The first numbers are those of `Keywords` (Token.h), in their order.
    Names();

    NameId Intern(std::u16string_view name);
    NameId Find(std::u16string_view name) const;  ///< `NoName` when it never occurred.
    std::u16string_view Spelling(NameId id) const { return entries_[id].spelling; }
    std::size_t Count() const { return entries_.size(); }

private:
    struct Entry {
        std::u16string spelling;
        std::size_t hash;
    };

    static std::size_t HashOf(std::u16string_view name);
    std::size_t PlaceOf(std::u16string_view name, std::size_t hash) const;
    void Grow();

    std::deque<Entry> entries_;
    std::vector<NameId> table_;  ///< Open addressing; a power of two.
};

}  // namespace tessaloom::vbscript
