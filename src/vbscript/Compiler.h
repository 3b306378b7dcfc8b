#pragma once

#include <list>
#include <memory>
#include <vector>

#include "vbscript/ClassInfo.h"
#include "vbscript/Context.h"
#include "vbscript/Routine.h"
#include "vbscript/Symbols.h"
#include "vbscript/Syntax.h"

namespace tessaloom::vbscript {

/// What is known outside of a text that is being compiled.
struct Program {
    Names names;
    Symbols symbols;
    std::list<Routine, BudgetAllocator<Routine>>
        routines;  ///< Of the outermost level, in the order of the code.
    std::list<Ref<ClassInfo>> classes;
    /// Which others of the same name have followed; some may still be in use.
    std::list<Routine, BudgetAllocator<Routine>> replaced;
    std::list<Ref<ClassInfo>> replacedClasses;
    std::vector<Ref<Object>> openObjects;  ///< Of the host, with members that are known by name alone.
};

/// How many globals a program may have; the machine's stack begins behind them.
inline constexpr std::uint32_t MostGlobals = 32768;

/// Turns trees into routines. Throws SyntaxError 1041 for names defined twice, before anything is defined,
/// 1001 for what is too large, and RuntimeError 7; procedures that were not reached then raise error 51.
class Compiler {
public:
    /// Where the text stands: `around` is the routine whose locals it sees (Execute, Eval), or null.
    struct Place {
        const Routine* around = nullptr;
        bool onGlobals = false;             ///< Nothing runs yet: registers may be the globals themselves.
        ExecutedNames* executed = nullptr;  ///< Of `around`: where the text declares its variables.
    };

    /// `globals`: the values of the symbols.
    Compiler(Context& context, Program& program, Value* globals)
        : context_(context), program_(program), globals_(globals) {}

    /// Finds names that are defined twice.
    static void Check(const syntax::ProgramTree& tree);

    /// Defines all that the text defines; what it does is the result.
    std::unique_ptr<Routine> Compile(const syntax::ProgramTree& tree, Place place);

    /// A routine whose result is the only expression of the tree.
    std::unique_ptr<Routine> CompileExpression(const syntax::ProgramTree& tree, Place place);

private:
    void DefineNames(const syntax::ProgramTree& tree, bool nested);
    void DefineClass(const syntax::ClassDeclaration& declaration);
    void DefineRoutine(const syntax::RoutineDeclaration& declaration, bool explicitNames);
    int Define(NameId name, SymbolKind kind);

    Context& context_;
    Program& program_;
    Value* globals_;
    std::vector<std::pair<const syntax::RoutineDeclaration*, Routine*>> pending_;
};

/// The value that a Const gives its name.
Value ConstantValue(Context& context, const syntax::ProgramTree& tree,
                    const syntax::ConstantDeclaration& constant);

}  // namespace tessaloom::vbscript
