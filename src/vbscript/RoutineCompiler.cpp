#include "vbscript/RoutineCompiler.h"

#include <algorithm>
#include <functional>

#include "vbscript/Error.h"
#include "vbscript/ExecutedNames.h"

namespace tessaloom::vbscript {

using syntax::ExpressionKind;
using syntax::RoutineKind;
using syntax::StatementKind;

namespace {

constexpr std::size_t MostRegisters = 65535;

[[noreturn]] void TooLarge(Position at) { throw SyntaxError(1001, at.line, at.column); }

bool HasResult(RoutineKind kind) { return kind == RoutineKind::Function || kind == RoutineKind::PropertyGet; }

}  // namespace

RoutineCompiler::RoutineCompiler(Context& context, Program& program, const syntax::ProgramTree& tree,
                                 Routine& routine, Compiler::Place place, Value* globals)
    : context_(context),
      program_(program),
      tree_(tree),
      routine_(routine),
      place_(place),
      globals_(globals),
      owner_(routine.owner) {}

void RoutineCompiler::Declare(const syntax::RoutineDeclaration& declaration) {
    routine_.explicitNames = routine_.explicitNames || tree_.explicitNames;
    routine_.onGlobals = place_.onGlobals && routine_.kind == RoutineKind::Main;
    DeclareLocals(declaration);
    Survey(declaration.body);
    PassByValueWhereUnseen(declaration);
}

void RoutineCompiler::Compile(const syntax::RoutineDeclaration& declaration) {
    routine_.locals = static_cast<std::uint16_t>(next_);
    if (routine_.onGlobals) next_ = MostGlobals;
    routine_.slots = routine_.locals;
    routine_.frameSize = static_cast<std::uint32_t>(next_);

    BeginMark(declaration.at);
    for (const syntax::VariableDeclaration& variable : declaration.variables) {
        if (!variable.isArray) continue;
        const Meaning meaning = Resolve(variable.name);
        const Register array =
            meaning.where == Where::Local ? static_cast<Register>(meaning.index) : NewRegister();
        EmitD(Opcode::MakeArray, array, static_cast<int>(routine_.bounds.size()));
        routine_.bounds.emplace_back(variable.bounds.begin(), variable.bounds.end());
        if (meaning.where == Where::Local)
            arrays_.insert(array);
        else
            StoreVariable(meaning, array, Opcode::Put);
    }
    EndMark(routine_.marks.size() - 1);
    next_ = routine_.onGlobals ? MostGlobals : routine_.locals;
    CompileBlock(declaration.body);
    BeginMark(declaration.at);
    Emit(Opcode::Return);
}

void RoutineCompiler::CompileExpression(const Expression& expression) {
    routine_.resultSlot = NewRegister();
    Survey(&expression);
    routine_.locals = routine_.slots = static_cast<std::uint16_t>(next_);
    BeginMark(tree_.main.body[0]->at);
    const Register value = Evaluate(expression);
    Emit(Opcode::Put, static_cast<std::size_t>(routine_.resultSlot), value);
    ReleaseDirty();
    EndMark(routine_.marks.size() - 1);
    Emit(Opcode::Return);
}

// Names

void RoutineCompiler::AddLocal(NameId name, Meaning meaning) { locals_[name] = meaning; }

void RoutineCompiler::DeclareLocals(const syntax::RoutineDeclaration& declaration) {
    const auto addVariable = [&](NameId name, Where where) {
        const Register slot = NewRegister();
        AddLocal(name, {where, slot, nullptr, false});
        routine_.names.push_back({name, slot});
    };
    for (const syntax::Parameter& parameter : declaration.parameters) {
        routine_.passing.push_back(parameter.byValue ? Routine::Passing::ByValue
                                                     : Routine::Passing::ByReference);
        routine_.anyByValue = routine_.anyByValue || parameter.byValue;
        addVariable(parameter.name, parameter.byValue ? Where::Local : Where::Parameter);
    }
    routine_.parameters = static_cast<std::uint16_t>(declaration.parameters.size());
    if (routine_.kind == RoutineKind::Main && !place_.around) return;  // its names are the globals

    if (HasResult(routine_.kind)) {
        routine_.resultSlot = NewRegister();
        if (!locals_.contains(declaration.name)) {
            AddLocal(declaration.name, {Where::Local, routine_.resultSlot, nullptr, true});
            routine_.names.push_back({declaration.name, static_cast<Register>(routine_.resultSlot)});
        }
    }
    for (const syntax::VariableDeclaration& variable : declaration.variables)
        if (!Import(variable.name, Mention::Declared) && !ImportNew(variable.name))
            addVariable(variable.name, Where::Local);
    for (const syntax::ConstantDeclaration& constant : declaration.constants) {
        localConstants_.push_back(ConstantValue(context_, tree_, constant));
        AddLocal(constant.name, {Where::Constant, 0, &localConstants_.back(), false});
    }
}

/// Walks the whole body before any code is made: a name that is assigned somewhere and defined nowhere is a
/// local variable from the start.
void RoutineCompiler::Survey(const syntax::Block& block) {
    for (const Statement* statement : block) Survey(*statement);
}

void RoutineCompiler::Survey(const Statement& statement) {
    switch (statement.kind) {
        case StatementKind::Let:
        case StatementKind::Set:
            SurveyTarget(statement.target, Mention::Assigned);
            break;
        case StatementKind::ReDim:
            SurveyTarget(statement.target, Mention::Declared);
            break;
        case StatementKind::For:
        case StatementKind::ForEach:
            Use(statement.name, Mention::Assigned);
            break;
        default:
            Survey(statement.target);
    }
    Survey(statement.value);
    Survey(statement.limit);
    Survey(statement.step);
    for (const Expression* argument : statement.arguments) Survey(argument);
    for (const syntax::Branch& branch : statement.branches) {
        for (const Expression* test : branch.tests) Survey(test);
        Survey(branch.body);
    }
    Survey(statement.body);
}

void RoutineCompiler::SurveyTarget(const Expression* target, Mention mention) {
    if (!target) return;
    const Expression* base = target;
    while (base->kind == ExpressionKind::Call) {
        for (const Expression* argument : base->arguments) Survey(argument);
        base = base->left;
    }
    if (base->kind == ExpressionKind::Name)
        Use(base->name, mention);
    else
        Survey(base);
}

void RoutineCompiler::Survey(const Expression* expression) {
    while (expression) {
        if (expression->kind == ExpressionKind::Name) Use(expression->name, Mention::Read);
        for (const Expression* argument : expression->arguments) Survey(argument);
        Survey(expression->right);
        expression = expression->left;
    }
}

/// Makes a local of the routine around, if it has one of that name, a variable here, too.
bool RoutineCompiler::Import(NameId name, Mention mention) {
    if (!place_.around) return false;
    if (locals_.contains(name)) return true;
    for (const LocalName& outer : place_.around->names) {
        if (outer.name != name) continue;
        const bool isGlobal = outer.isStandIn && ResolveGlobal(name).where != Where::Late;
        if (isGlobal && mention != Mention::Declared) return false;
        if (outer.isStandIn && mention == Mention::Read) {
            StandIn(name, {0, outer.slot});
        } else {
            if (outer.isStandIn) place_.executed->Declare(name);
            AddImport(name, {0, outer.slot});
        }
        return true;
    }
    Value* const executed = place_.executed->Find(name);
    if (executed) AddImport(name, {0, 0, executed});
    return executed != nullptr;
}

/// Makes a variable that outlives this text; false when that is no concern.
bool RoutineCompiler::ImportNew(NameId name) {
    if (!place_.around) return false;
    AddImport(name, {0, 0, &place_.executed->Declare(name)});
    return true;
}

void RoutineCompiler::AddImport(NameId name, Routine::Import import) {
    import.slot = NewRegister();
    AddLocal(name, {Where::Parameter, import.slot, nullptr, false});
    routine_.imports.push_back(import);
    routine_.names.push_back({name, import.slot});
}

void RoutineCompiler::StandIn(NameId name, Routine::Import import) {
    if (standIns_.contains(name)) return;
    import.slot = NewRegister();
    if (place_.around) routine_.imports.push_back(import);
    standIns_[name] = import.slot;
    routine_.names.push_back({name, import.slot, true});
}

/// False when the name has none.
bool RoutineCompiler::StandInBecomesVariable(NameId name) {
    const auto standIn = standIns_.find(name);
    if (standIn == standIns_.end()) return false;
    AddLocal(name, {place_.around ? Where::Parameter : Where::Local, standIn->second, nullptr, false});
    if (place_.around) place_.executed->Declare(name);
    for (LocalName& local : routine_.names)
        if (local.name == name) local.isStandIn = false;
    return true;
}

void RoutineCompiler::Use(NameId name, Mention mention) {
    const bool assigned = mention != Mention::Read;
    if (locals_.contains(name) || (assigned && StandInBecomesVariable(name)) || Import(name, mention)) return;
    const bool isOuter = routine_.kind == RoutineKind::Main && !place_.around;
    const bool mustBeDeclared = routine_.explicitNames && mention != Mention::Declared;
    if (mustBeDeclared || (isOuter && !assigned) || Resolve(name).where != Where::Late) return;
    if (isOuter) {
        program_.symbols[static_cast<std::size_t>(program_.symbols.Of(name))].kind = SymbolKind::Variable;
    } else if (assigned) {
        if (ImportNew(name)) return;
        const Register slot = NewRegister();
        AddLocal(name, {Where::Local, slot, nullptr, false});
        routine_.names.push_back({name, slot});
    } else {
        StandIn(name, {0, 0, place_.around ? &place_.executed->StandIn(name) : nullptr});
    }
}

RoutineCompiler::Meaning RoutineCompiler::Resolve(NameId name, bool asCall) {
    if (const auto found = locals_.find(name); found != locals_.end())
        if (!asCall || !found->second.isResult) return found->second;
    if (owner_) {
        const int member = owner_->Find(name);
        if (member >= 0) {
            const int field = owner_->members[static_cast<std::size_t>(member)].field;
            return field >= 0 ? Meaning{Where::Field, field} : Meaning{Where::Own, member};
        }
    }
    return ResolveGlobal(name);
}

RoutineCompiler::Meaning RoutineCompiler::ResolveGlobal(NameId name) {
    Symbols& symbols = program_.symbols;
    const int symbol = symbols.Find(name);
    if (symbol >= 0) {
        switch (symbols[static_cast<std::size_t>(symbol)].kind) {
            case SymbolKind::Variable:
                return {routine_.onGlobals ? Where::Local : Where::Global, symbol};
            case SymbolKind::Constant:
                return {Where::Constant, symbol, &globals_[symbol]};
            case SymbolKind::Routine:
                return {Where::Routine, symbol};
            case SymbolKind::Class:
                return {Where::Class, symbol};
            case SymbolKind::HostMember:
                return {Where::HostMember, symbol};
            case SymbolKind::Unknown:
                break;
        }
    }
    const std::u16string_view spelling = program_.names.Spelling(name);
    for (const Ref<Object>& object : program_.openObjects) {
        const int member = object->Find(spelling);
        if (member < 0) continue;
        const int number = symbols.Of(name);
        Symbol& entry = symbols[static_cast<std::size_t>(number)];
        entry.kind = SymbolKind::HostMember;
        entry.host = object;
        entry.member = member;
        if (const PlainMember* const plain = object->Plain(member)) entry.plain = *plain;
        return {Where::HostMember, number};
    }
    constexpr std::u16string_view Specials[] = {u"Eval", u"Execute", u"ExecuteGlobal", u"GetRef",
                                                u"Randomize"};
    for (std::size_t i = 0; i < std::size(Specials); ++i)
        if (SameName(Specials[i], spelling)) return {Where::Special, static_cast<int>(i)};
    if (const int builtin = FindBuiltin(spelling); builtin >= 0) return {Where::Builtin, builtin};
    if (const Value* const constant = FindConstant(spelling)) return {Where::Constant, 0, constant};
    return {Where::Late, symbols.Of(name)};
}

/// A parameter by reference that the routine only reads, without ever leaving the routine meanwhile, may as
/// well be a copy: nobody can tell.
void RoutineCompiler::PassByValueWhereUnseen(const syntax::RoutineDeclaration& declaration) {
    if (declaration.parameters.empty() || !routine_.imports.empty() || IsObservable(declaration)) return;
    for (std::size_t i = 0; i < declaration.parameters.size(); ++i) {
        Meaning& meaning = locals_[declaration.parameters[i].name];
        if (meaning.where != Where::Parameter) continue;
        meaning.where = Where::Local;
        routine_.passing[i] = Routine::Passing::Unseen;
        routine_.anyByValue = true;
    }
}

namespace {

/// Looks for anything but reading variables, arithmetic and assignments to named locals.
class Observer {
public:
    using Expression = syntax::Expression;

    explicit Observer(std::function<bool(NameId, bool asCall)> isQuiet,
                      std::function<bool(NameId)> isOwnLocal)
        : isQuiet_(std::move(isQuiet)), isOwnLocal_(std::move(isOwnLocal)) {}

    bool Disturbs(const syntax::Block& block) {
        return std::any_of(block.begin(), block.end(), [&](const auto* one) { return Disturbs(*one); });
    }

private:
    bool Disturbs(const syntax::Statement& statement) {
        switch (statement.kind) {
            case StatementKind::Let:
                if (statement.target->kind != ExpressionKind::Name || !isOwnLocal_(statement.target->name))
                    return true;
                break;
            case StatementKind::For:
                if (!isOwnLocal_(statement.name)) return true;
                break;
            case StatementKind::If:
            case StatementKind::Select:
            case StatementKind::Do:
            case StatementKind::While:
            case StatementKind::ExitDo:
            case StatementKind::ExitFor:
            case StatementKind::ExitRoutine:
                break;
            default:
                return true;
        }
        if (Disturbs(statement.value) || Disturbs(statement.limit) || Disturbs(statement.step)) return true;
        for (const syntax::Branch& branch : statement.branches) {
            for (const Expression* test : branch.tests)
                if (Disturbs(test)) return true;
            if (Disturbs(branch.body)) return true;
        }
        return Disturbs(statement.body);
    }

    bool Disturbs(const Expression* expression) {
        for (; expression; expression = expression->left) {
            switch (expression->kind) {
                case ExpressionKind::Constant:
                case ExpressionKind::Parenthesized:
                case ExpressionKind::Unary:
                    break;
                case ExpressionKind::Binary:
                    if (Disturbs(expression->right)) return true;
                    break;
                case ExpressionKind::Name:
                    return !isQuiet_(expression->name, false);
                case ExpressionKind::Call:
                    if (expression->left->kind != ExpressionKind::Name ||
                        !isQuiet_(expression->left->name, true))
                        return true;
                    for (const Expression* argument : expression->arguments)
                        if (Disturbs(argument)) return true;
                    return false;
                default:
                    return true;
            }
        }
        return false;
    }

    std::function<bool(NameId, bool)> isQuiet_;
    std::function<bool(NameId)> isOwnLocal_;
};

}  // namespace

bool RoutineCompiler::IsObservable(const syntax::RoutineDeclaration& declaration) {
    Observer observer(
        [&](NameId name, bool asCall) {
            const Meaning meaning = Resolve(name, asCall);
            return IsVariable(meaning) || meaning.where == Where::Constant || meaning.where == Where::Builtin;
        },
        [&](NameId name) { return Resolve(name).where == Where::Local; });
    return observer.Disturbs(declaration.body);
}

// Code

std::size_t RoutineCompiler::Emit(Opcode code, std::size_t a, std::size_t b, std::size_t c) {
    TimeLimit::Poll();
    routine_.code.push_back(
        {code, static_cast<std::uint16_t>(a), static_cast<std::uint16_t>(b), static_cast<std::uint16_t>(c)});
    return routine_.code.size() - 1;
}

std::size_t RoutineCompiler::EmitD(Opcode code, std::size_t a, std::int32_t d) {
    const std::size_t place = Emit(code, a);
    routine_.code.back().SetD(d);
    return place;
}

void RoutineCompiler::EmitWord(std::size_t a, std::size_t b, std::size_t c) { Emit(Opcode::Jump, a, b, c); }

void RoutineCompiler::EmitWordD(std::int32_t d, std::size_t a) { EmitD(Opcode::Jump, a, d); }

void RoutineCompiler::Target(std::size_t place) {
    routine_.code[place].SetD(static_cast<std::int32_t>(Here()));
}

std::int32_t RoutineCompiler::ConstantIndex(const Value& value) {
    routine_.constants.push_back(value);
    return static_cast<std::int32_t>(routine_.constants.size()) - 1;
}

RoutineCompiler::Register RoutineCompiler::NewRegister(std::size_t count) {
    const std::size_t first = next_;
    next_ += count;
    if (next_ > MostRegisters) TooLarge(routine_.marks.empty() ? Position() : routine_.marks.back().at);
    routine_.frameSize = std::max(routine_.frameSize, static_cast<std::uint32_t>(next_));
    return static_cast<Register>(first);
}

std::size_t RoutineCompiler::BeginMark(Position at) {
    const auto start = static_cast<std::uint32_t>(Here());
    routine_.marks.push_back({start, start, at, static_cast<std::uint16_t>(next_)});
    routine_.slots = std::max(routine_.slots, static_cast<std::uint16_t>(next_));
    return routine_.marks.size() - 1;
}

/// Notes that a temporary may go on holding an object when its statement is over.
void RoutineCompiler::Dirty(Register reg) {
    if (dirtyFrom_ == dirtyTo_) dirtyFrom_ = reg, dirtyTo_ = reg;
    dirtyFrom_ = std::min<std::size_t>(dirtyFrom_, reg);
    dirtyTo_ = std::max<std::size_t>(dirtyTo_, reg + std::size_t{1});
}

void RoutineCompiler::ReleaseDirty() {
    if (dirtyFrom_ < dirtyTo_) Emit(Opcode::Release, dirtyFrom_, dirtyTo_ - dirtyFrom_);
    dirtyFrom_ = dirtyTo_ = 0;
}

}  // namespace tessaloom::vbscript
