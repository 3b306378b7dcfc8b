#pragma once

#include <bitset>
#include <cstdint>
#include <string_view>

#include "vbscript/MemoryBudget.h"
#include "vbscript/UnitSet.h"

namespace tessaloom::vbscript {

/// A regular expression, compiled for `RegExpMatcher`.
///
/// The notation is that of the third edition of ECMA-262, but for what existing scripts rely on: `.` is
/// anything but a line feed, a `]` that begins a class is a member of it, a brace that begins no count stands
/// for itself, and groups keep what they matched when the loop around them goes on.
struct RegExpProgram {
    enum class Op : std::uint8_t {
        Unit,     ///< `value`
        Any,      ///< All but a line feed.
        Set,      ///< `sets[value]`
        Run,      ///< `least` to `most` units, each as the instruction behind this one says.
        LazyRun,  ///< The same, as few as possible.
        Begin,    ///< Of the text or, with `MultiLine`, of a line; so the next.
        End,
        Boundary,  ///< Of a word.
        NotBoundary,
        Save,       ///< The position, in register `value`.
        Back,       ///< What group `value` has matched.
        Jump,       ///< To `target`.
        Split,      ///< On with the next; later, if that fails, at `target`.
        LazySplit,  ///< The other way round.
        LoopInit,   ///< Registers `value` (rounds so far) and `value` + 1 (where the present one began).
        Loop,       ///< Another round up to `most`, or out to `target`.
        LazyLoop,
        LoopRound,   ///< What a lazy loop comes back to.
        LoopEnd,     ///< On to the Loop at `target`; a round above `least` that matched nothing fails.
        Look,        ///< Ahead; `value`: register of where the way back begins; then of the position.
        LookEnd,     ///< It matched.
        LookNot,     ///< Ahead; goes on at `target` when that fails.
        LookNotEnd,  ///< It matched, so all fails.
        Match,
    };

    struct Instruction {
        Op op;
        std::uint32_t value = 0;
        std::uint32_t target = 0;
        std::uint32_t least = 0, most = 0;
    };

    static constexpr std::uint32_t Unlimited = 0xFFFFFFFF;

    BudgetVector<Instruction> code;
    BudgetVector<UnitSet> sets;
    std::uint32_t groups = 0;  ///< Without the whole match. Group g has registers 2g and 2g + 1.
    std::uint32_t registers = 2;
    bool ignoreCase = false, multiLine = false;

    bool atBeginOnly = false;  ///< Nothing can match but at the text's first unit.
    bool firstKnown = false;   ///< A match begins with one of `first`, or a unit from 256 on.
    std::bitset<256> first;
};

/// Throws RuntimeError 5017 to 5021.
RegExpProgram CompileRegExp(std::u16string_view pattern, bool ignoreCase, bool multiLine);

}  // namespace tessaloom::vbscript
