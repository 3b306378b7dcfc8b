#pragma once

#include <cstdint>
#include <string_view>

#include "vbscript/MemoryBudget.h"
#include "vbscript/UnitSet.h"

namespace tessaloom::vbscript {

/// A regular expression as a tree.
struct RegExpSyntax {
    enum class Kind : std::uint8_t {
        Unit,  ///< `value`
        Any,
        Set,  ///< `sets[value]`
        Begin,
        End,
        Boundary,
        NotBoundary,
        Back,   ///< Group `value`.
        Group,  ///< Capturing, number `value`; one child.
        Look,   ///< One child; so the next.
        LookNot,
        Repeat,       ///< One child, `least` to `most` times.
        Sequence,     ///< Of its children, maybe none.
        Alternation,  ///< Between its children.
    };

    struct Node {
        Kind kind;
        std::uint32_t value = 0;
        std::uint32_t least = 0, most = 0;
        bool lazy = false;
        BudgetVector<std::uint32_t> children = {};  ///< Indexes of `nodes`.
    };

    BudgetVector<Node> nodes;
    BudgetVector<UnitSet> sets;
    std::uint32_t root = 0;
    std::uint32_t groups = 0;
};

/// Reads a pattern. With `ignoreCase` letters become sets of both cases. Throws RuntimeError 5017 to 5021, 28
/// for groups too deep within each other, 7 for a pattern too long.
RegExpSyntax ParseRegExp(std::u16string_view pattern, bool ignoreCase);

}  // namespace tessaloom::vbscript
