#pragma once

#include <memory>
#include <string>
#include <vector>

#include "vbscript/Bytecode.h"
#include "vbscript/MemoryBudget.h"
#include "vbscript/Names.h"
#include "vbscript/Object.h"
#include "vbscript/Syntax.h"
#include "vbscript/Value.h"

namespace tessaloom::vbscript {

class ClassInfo;
class ExecutedNames;

/// Where a statement begins in the code, and where the script goes on when it fails under Resume Next.
struct Mark {
    std::uint32_t start;
    std::uint32_t resume;
    Position at;
    std::uint16_t firstTemporary;  ///< Registers from here on hold nothing that outlives the statement.
};

/// One use of a member, with what was found there the last time.
struct Site {
    NameId name;
    int member = 0;
    const void* shape = nullptr;
    PlainMember plain = {};
    bool isInstance = false;
};

/// A local name, as Execute and Eval find it again.
struct LocalName {
    NameId name;
    std::uint16_t slot;
    bool isStandIn = false;  ///< Only read: it counts while nothing else has that name.
};

/// A procedure in compiled form, or the outermost statements of a text.
///
/// Registers: parameters, other locals, then temporaries. `slots` of them must be emptied when it ends.
struct Routine {
    /// No call has so many arguments.
    static constexpr std::uint16_t NotCompiled = 0xFFFF;

    NameId name = NoName;
    syntax::RoutineKind kind = syntax::RoutineKind::Main;
    bool isPrivate = false;
    bool explicitNames = false;
    bool onGlobals = false;  ///< Register n is global n; temporaries lie above all globals.
    bool anyByValue = false;
    std::uint16_t parameters = 0;  ///< `NotCompiled`: it may not be called.
    std::uint16_t locals = 0;
    std::uint16_t slots = 0;
    std::uint32_t frameSize = 0;
    std::int32_t resultSlot = -1;
    const ClassInfo* owner = nullptr;
    BudgetVector<Instruction> code;
    BudgetVector<Value> constants;
    BudgetVector<Mark> marks;
    mutable BudgetVector<Site> sites;
    BudgetVector<std::vector<int>> bounds;
    /// How a parameter is passed. `Unseen`: by reference, but nobody can tell a copy from it.
    enum class Passing : std::uint8_t { ByReference, ByValue, Unseen };
    BudgetVector<Passing> passing;  ///< One for each parameter.
    BudgetVector<LocalName> names;

    /// Of Execute and Eval in a routine: locals that stand for those of the routine around.
    struct Import {
        std::uint16_t slot;
        std::uint16_t outer;        ///< A register there,
        Value* executed = nullptr;  ///< or one of the texts executed there.
    };
    BudgetVector<Import> imports;
    Value* importsFrom = nullptr;       ///< The registers of the routine around.
    ExecutedNames* executed = nullptr;  ///< Where texts executed in this one declare names; null: its own.

    mutable int references = 0;  ///< Objects that GetRef has made of it.

    /// The mark of the statement that the instruction at `place` belongs to.
    const Mark& MarkAt(std::size_t place) const;
};

}  // namespace tessaloom::vbscript
