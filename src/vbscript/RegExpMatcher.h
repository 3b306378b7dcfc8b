#pragma once

#include <cstdint>
#include <string_view>

#include "vbscript/MemoryBudget.h"
#include "vbscript/RegExpProgram.h"

namespace tessaloom::vbscript {

/// Searches texts by backtracking, on a stack of its own: no text and no pattern can exhaust that of the
/// process.
class RegExpMatcher {
public:
    /// Where a group begins and ends in the text, in units; -1: it took no part.
    using Positions = BudgetVector<std::int32_t>;

    /// `program` is kept as a reference.
    explicit RegExpMatcher(const RegExpProgram& program) : program_(program) {}

    /// The first match at `from` or behind. Positions: two of the whole match, then of each group. Throws
    /// RuntimeError 7 when the way back becomes too long to remember.
    bool Find(std::u16string_view text, std::size_t from, Positions& positions);

private:
    using Op = RegExpProgram::Op;
    using Instruction = RegExpProgram::Instruction;

    /// One step of the way back.
    struct Step {
        enum class Kind : std::uint32_t {
            Choice,   ///< Go on at instruction `code` and position `a`.
            Restore,  ///< Put `a` into register `code`; go further back.
            Shorten,  ///< A run at `code` reached `a`; it may end one earlier, down to `b`.
            Lengthen  ///< A lazy run at `code` reached `a`; it may take one more, `b` times.
        };
        Kind kind;
        std::uint32_t code;
        std::int32_t a, b;
    };

    static constexpr int UnitsAStep = 8;  ///< Compared one after the other they cost like one step.
    static constexpr std::size_t MostSteps = std::size_t{6} << 20;  // of 16 bytes
    static constexpr std::int64_t StepsBetweenChecks = 1 << 16;
    static constexpr std::int64_t StepBudget = std::int64_t{1} << 28;  ///< Above: RuntimeError 28.

    bool MatchHere(std::int32_t position);
    bool Back(std::uint32_t& code, std::int32_t& position);
    bool Shorten(Step& run, std::uint32_t& code, std::int32_t& position) const;
    void Push(Step step);
    void Set(std::uint32_t index, std::int32_t value);
    void Spend(std::int64_t steps);

    bool Takes(const Instruction& unit, char16_t value) const;
    std::int32_t RunEnd(const Instruction& unit, std::int32_t from, std::uint32_t most) const;
    bool Run(const Instruction& run, std::uint32_t code, std::int32_t& position);
    bool LazyRun(const Instruction& run, std::uint32_t code, std::int32_t& position);
    bool BackReference(std::uint32_t group, std::int32_t& position);
    bool AtBegin(std::int32_t position) const;
    bool AtEnd(std::int32_t position) const;
    bool AtBoundary(std::int32_t position) const;
    void BeginRound(std::uint32_t state, std::int32_t position);
    void DropChoices(std::size_t height);
    void Undo(std::size_t height);

    const RegExpProgram& program_;
    std::u16string_view text_;
    Positions registers_;
    BudgetVector<Step> steps_;
    std::int64_t untilCheck_ = StepsBetweenChecks;
    std::int64_t spent_ = 0;
};

}  // namespace tessaloom::vbscript
