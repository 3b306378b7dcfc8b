#pragma once

#include <deque>
#include <unordered_set>
#include <vector>

#include "vbscript/Builtins.h"
#include "vbscript/Compiler.h"
#include "vbscript/Error.h"

namespace tessaloom::vbscript {

/// Compiles the body of one routine.
///
/// Registers are handed out like a stack: locals first, then what a block keeps (the limit of a For, the
/// object of a With), then the temporaries of a statement. An expression that is a variable stays in its own
/// register; anything else goes to a temporary.
class RoutineCompiler {
public:
    RoutineCompiler(Context& context, Program& program, const syntax::ProgramTree& tree, Routine& routine,
                    Compiler::Place place, Value* globals);

    /// Finds its local names, and (outermost) the globals it assigns. Comes before `Compile`.
    void Declare(const syntax::RoutineDeclaration& declaration);
    void Compile(const syntax::RoutineDeclaration& declaration);
    void CompileExpression(const syntax::Expression& expression);

private:
    using Expression = syntax::Expression;
    using Statement = syntax::Statement;
    using Register = std::uint16_t;
    using Arguments = std::span<Expression*>;

    /// What a name stands for.
    enum class Where : std::uint8_t {
        Local,
        Parameter,
        Global,
        Field,  // variables
        Constant,
        Own,
        Routine,
        Builtin,
        Special,
        HostMember,
        Class,
        Late,
    };
    struct Meaning {
        Where where = Where::Late;
        int index = 0;                 ///< Register, global, field, member, built-in.
        const Value* value = nullptr;  ///< Of a constant.
        bool isResult = false;         ///< The variable of the function's own name.
    };

    /// How a name occurs: ReDim declares what is not declared, even where names must be.
    enum class Mention : std::uint8_t { Read, Assigned, Declared };

    static bool IsVariable(const Meaning& meaning) { return meaning.where <= Where::Field; }

    /// @name Names
    /// @{
    void DeclareLocals(const syntax::RoutineDeclaration& declaration);
    void AddLocal(NameId name, Meaning meaning);
    void Survey(const syntax::Block& block);
    void Survey(const Statement& statement);
    void Survey(const Expression* expression);
    void SurveyTarget(const Expression* target, Mention mention);
    bool Import(NameId name, Mention mention);
    bool ImportNew(NameId name);
    void AddImport(NameId name, Routine::Import import);
    void StandIn(NameId name, Routine::Import import);
    bool StandInBecomesVariable(NameId name);
    void Use(NameId name, Mention mention);
    Meaning Resolve(NameId name, bool asCall = false);
    Meaning ResolveGlobal(NameId name);
    bool IsObservable(const syntax::RoutineDeclaration& declaration);
    void PassByValueWhereUnseen(const syntax::RoutineDeclaration& declaration);
    /// @}

    /// @name Code
    /// @{
    std::size_t Emit(Opcode code, std::size_t a = 0, std::size_t b = 0, std::size_t c = 0);
    std::size_t EmitD(Opcode code, std::size_t a, std::int32_t d);
    void EmitWord(std::size_t a, std::size_t b = 0, std::size_t c = 0);
    void EmitWordD(std::int32_t d, std::size_t a = 0);
    void EmitRaise(ErrorCode code) { EmitD(Opcode::Raise, 0, static_cast<int>(code)); }
    void Target(std::size_t place);  ///< The jump at `place` leads here.
    void JumpBack(Opcode code, std::size_t a, std::size_t to) { EmitD(code, a, static_cast<int>(to)); }
    std::size_t Here() const { return routine_.code.size(); }
    std::int32_t ConstantIndex(const Value& value);
    Register NewRegister(std::size_t count = 1);
    std::size_t BeginMark(Position at);
    void EndMark(std::size_t mark) { routine_.marks[mark].resume = static_cast<std::uint32_t>(Here()); }
    bool IsTemporary(Register reg) const {
        return reg >= (routine_.onGlobals ? MostGlobals : routine_.locals);
    }
    void Dirty(Register reg);
    void ReleaseDirty();
    /// @}

    /// @name Expressions
    /// @{
    static constexpr int Anywhere = -1;
    static constexpr std::size_t MostShortIndexes = 65536;  ///< Of those that one instruction names.
    Register Evaluate(const Expression& expression, int wanted = Anywhere);
    Register EvaluateName(const Expression& expression, int wanted);
    Register Receiver(const Expression& target, Register first, bool mayStay);
    std::size_t SiteOf(NameId name);
    Register EvaluateMember(const Expression& expression, Arguments arguments, int wanted, CallKind kind);
    Register EvaluateCall(const Expression& expression, int wanted);
    Register EvaluateUnary(const Expression& expression, int wanted);
    Register EvaluateBinary(const Expression& expression, int wanted);
    Register CallNamed(const Expression& callee, Arguments arguments, int wanted, bool asStatement);
    Register CallBuiltin(int builtin, Arguments arguments, int wanted);
    Register CallSpecial(SpecialCall which, Arguments arguments, int wanted);
    Register IndexVariable(Register variable, Arguments arguments, int wanted);
    Register Constant(const Value& value, int wanted);
    Register Moved(Register from, int wanted);
    Register VariableRegister(const Meaning& meaning);
    const Value* ConstantOperand(const Expression& expression);
    bool MayCall(const Expression* expression);
    bool MayChange(const Expression& variable, const Expression* expression);
    bool Mentions(const Expression* expression, NameId name);
    int ResultRegister(int wanted) { return wanted == Anywhere ? NewRegister() : wanted; }
    /// @}

    /// @name Arguments
    /// @{
    struct WriteBack {
        Register variable;
        Register first;
        std::size_t count;
    };
    std::vector<WriteBack> ReserveElements(Arguments arguments);
    void PassArguments(Arguments arguments, Register first, std::vector<WriteBack>& elements);
    void PassByReference(const Expression& name, const Meaning& meaning, Register to);
    void PassValues(Arguments arguments, Register first);
    void WriteElementsBack(const std::vector<WriteBack>& elements);
    bool IsElement(const Expression* argument);
    /// @}

    /// @name Conditions
    /// @{
    std::size_t JumpUnless(const Expression& condition);  ///< The jump to give a target.
    /// @}

    /// @name Statements
    /// @{
    void CompileBlock(const syntax::Block& block);
    void CompileStatement(const Statement& statement);
    void CompileAssignment(const Statement& statement);
    void AssignName(const Expression& target, const Expression& value, bool isSet);
    bool HoldsArray(const Meaning& meaning) const;
    void StoreVariable(const Meaning& meaning, Register from, Opcode local);
    void AssignElement(const Expression& target, const Expression& value, bool isSet);
    void AssignMember(const Expression& object, NameId name, Arguments arguments, const Expression& value,
                      bool isSet, bool own);
    bool AppendInPlace(const Meaning& meaning, const Expression& target, const Expression& value);
    Register ElementVariable(const Expression& expression);
    void CompileInvoke(const Statement& statement);
    void CompileReDim(const Statement& statement);
    void CompileErase(const Statement& statement);
    void CompileIf(const Statement& statement);
    void CompileSelect(const Statement& statement);
    void RequireDeclared(const Meaning& meaning);
    void CompileFor(const Statement& statement);
    void CompileForEach(const Statement& statement);
    void CompileDo(const Statement& statement);
    void CompileWith(const Statement& statement);
    void CompileExit(syntax::StatementKind kind);
    /// @}

    struct Loop {
        bool isFor;
        std::size_t kept;  ///< Registers below it stay filled behind the loop's end.
        std::vector<std::size_t> exits;
    };

    Context& context_;
    Program& program_;
    const syntax::ProgramTree& tree_;
    Routine& routine_;
    Compiler::Place place_;
    Value* globals_;
    const ClassInfo* owner_;
    BudgetMap<NameId, Meaning> locals_;
    BudgetMap<NameId, Register> standIns_;               ///< Locals for names that nobody defines.
    BudgetMap<std::uint32_t, std::int32_t> constantOf_;  ///< Of the tree's constants.
    std::vector<Loop> loops_;
    std::vector<Register> withs_;
    std::deque<Value, BudgetAllocator<Value>> localConstants_;
    std::unordered_set<Register> arrays_;  ///< Local variables that are declared as arrays.
    std::size_t next_ = 0;                 ///< The first free register.
    std::size_t dirtyFrom_ = 0, dirtyTo_ = 0;
    const BudgetVector<Routine::Passing>* calleePassing_ = nullptr;  ///< For the next `PassArguments`.
};

}  // namespace tessaloom::vbscript
