#include <algorithm>

#include "vbscript/Error.h"
#include "vbscript/Operators.h"
#include "vbscript/RoutineCompiler.h"

namespace tessaloom::vbscript {

using syntax::ExpressionKind;

namespace {

/// The instruction of a binary operator; that with a constant on the right lies a fixed distance behind it.
Opcode OpcodeOf(TokenKind operation) {
    switch (operation) {
        case TokenKind::Plus:
            return Opcode::Add;
        case TokenKind::Minus:
            return Opcode::Subtract;
        case TokenKind::Times:
            return Opcode::Multiply;
        case TokenKind::Divide:
            return Opcode::Divide;
        case TokenKind::IntegerDivide:
            return Opcode::IntegerDivide;
        case TokenKind::Mod:
            return Opcode::Modulo;
        case TokenKind::Power:
            return Opcode::Power;
        case TokenKind::Ampersand:
            return Opcode::Concatenate;
        case TokenKind::And:
            return Opcode::And;
        case TokenKind::Or:
            return Opcode::Or;
        case TokenKind::Xor:
            return Opcode::Xor;
        case TokenKind::Eqv:
            return Opcode::Eqv;
        case TokenKind::Imp:
            return Opcode::Imp;
        case TokenKind::Is:
            return Opcode::Is;
        case TokenKind::Equal:
            return Opcode::Equal;
        case TokenKind::NotEqual:
            return Opcode::NotEqual;
        case TokenKind::Less:
            return Opcode::Less;
        case TokenKind::Greater:
            return Opcode::Greater;
        case TokenKind::LessOrEqual:
            return Opcode::LessOrEqual;
        default:
            return Opcode::GreaterOrEqual;
    }
}

Opcode Shifted(Opcode code, Opcode from, Opcode to) {
    return static_cast<Opcode>(static_cast<int>(code) - static_cast<int>(from) + static_cast<int>(to));
}

Opcode WithConstant(Opcode code) { return Shifted(code, Opcode::Add, Opcode::AddK); }

bool IsComparison(TokenKind operation) {
    return operation >= TokenKind::Equal && operation <= TokenKind::GreaterOrEqual;
}

}  // namespace

RoutineCompiler::Register RoutineCompiler::Evaluate(const Expression& expression, int wanted) {
    switch (expression.kind) {
        case ExpressionKind::Constant: {
            const auto [place, isNew] = constantOf_.try_emplace(expression.index);
            if (isNew) place->second = ConstantIndex(tree_.constants[expression.index]);
            const int result = ResultRegister(wanted);
            EmitD(Opcode::LoadConstant, static_cast<std::size_t>(result), place->second);
            return static_cast<Register>(result);
        }
        case ExpressionKind::Name:
            return EvaluateName(expression, wanted);
        case ExpressionKind::Member:
        case ExpressionKind::WithMember:
            return EvaluateMember(expression, {}, wanted, CallKind::Get);
        case ExpressionKind::Call:
            return EvaluateCall(expression, wanted);
        case ExpressionKind::Parenthesized:
            return Evaluate(*expression.left, wanted);
        case ExpressionKind::Unary:
            return EvaluateUnary(expression, wanted);
        case ExpressionKind::Binary:
            return EvaluateBinary(expression, wanted);
        case ExpressionKind::New: {
            const int result = ResultRegister(wanted);
            EmitD(Opcode::New, static_cast<std::size_t>(result), static_cast<std::int32_t>(expression.name));
            return static_cast<Register>(result);
        }
        case ExpressionKind::Me: {
            const int result = ResultRegister(wanted);
            Emit(Opcode::LoadMe, static_cast<std::size_t>(result));
            return static_cast<Register>(result);
        }
    }
    return 0;
}

RoutineCompiler::Register RoutineCompiler::Constant(const Value& value, int wanted) {
    const int result = ResultRegister(wanted);
    EmitD(Opcode::LoadConstant, static_cast<std::size_t>(result), ConstantIndex(value));
    return static_cast<Register>(result);
}

RoutineCompiler::Register RoutineCompiler::Moved(Register from, int wanted) {
    if (wanted == Anywhere || wanted == from) return from;
    Emit(Opcode::Copy, static_cast<std::size_t>(wanted), from);
    if (IsTemporary(from)) Dirty(from);
    return static_cast<Register>(wanted);
}

RoutineCompiler::Register RoutineCompiler::EvaluateName(const Expression& expression, int wanted) {
    const Meaning meaning = Resolve(expression.name);
    const auto index = static_cast<std::size_t>(meaning.index);
    const auto load = [&](Opcode code, std::size_t c = 0) {
        const int result = ResultRegister(wanted);
        Emit(code, static_cast<std::size_t>(result), index, c);
        return static_cast<Register>(result);
    };
    switch (meaning.where) {
        case Where::Local:
            if (wanted == Anywhere) return static_cast<Register>(meaning.index);
            return load(Opcode::Copy);
        case Where::Parameter:
            return load(Opcode::LoadParameter);
        case Where::Global:
            return load(Opcode::LoadGlobal);
        case Where::Field:
            return load(Opcode::LoadField);
        case Where::Constant:
            return Constant(*meaning.value, wanted);
        case Where::Late: {
            const auto standIn = standIns_.find(expression.name);
            return load(Opcode::LoadName, standIn == standIns_.end() ? 0 : standIn->second + std::size_t{1});
        }
        default:
            return CallNamed(expression, {}, wanted, false);
    }
}

/// The register of a variable, or one with a reference to it.
RoutineCompiler::Register RoutineCompiler::VariableRegister(const Meaning& meaning) {
    if (meaning.where == Where::Local || meaning.where == Where::Parameter)
        return static_cast<Register>(meaning.index);
    const Register reference = NewRegister();
    Emit(meaning.where == Where::Global ? Opcode::RefGlobal : Opcode::RefField, reference,
         static_cast<std::size_t>(meaning.index));
    return reference;
}

/// The register of the object that a Member or WithMember is about: `first`, unless it `mayStay` in the
/// variable that holds it.
RoutineCompiler::Register RoutineCompiler::Receiver(const Expression& target, Register first, bool mayStay) {
    if (target.kind != ExpressionKind::Member) {
        if (withs_.empty())
            EmitRaise(ErrorCode::InvalidReference);
        else if (mayStay)
            return withs_.back();
        else
            Emit(Opcode::Copy, first, withs_.back());
        return first;
    }
    if (mayStay && target.left->kind == ExpressionKind::Name) {
        const Meaning meaning = Resolve(target.left->name);
        if (meaning.where == Where::Local || meaning.where == Where::Parameter)
            return static_cast<Register>(meaning.index);
        if (meaning.where == Where::Global) {
            Emit(Opcode::RefGlobal, first, static_cast<std::size_t>(meaning.index));
            return first;
        }
    }
    Evaluate(*target.left, first);
    return first;
}

std::size_t RoutineCompiler::SiteOf(NameId name) {
    routine_.sites.push_back({name});
    return routine_.sites.size() - 1;
}

/// `expression`: a Member or WithMember.
RoutineCompiler::Register RoutineCompiler::EvaluateMember(const Expression& expression, Arguments arguments,
                                                          int wanted, CallKind kind) {
    std::vector<WriteBack> elements = ReserveElements(arguments);
    const bool inPlace = wanted != Anywhere && static_cast<std::size_t>(wanted) + 1 == next_;
    const Register first = inPlace ? static_cast<Register>(wanted) : NewRegister();
    if (arguments.empty() && kind == CallKind::Get && routine_.sites.size() < MostShortIndexes) {
        const Register receiver = Receiver(expression, first, true);
        Emit(Opcode::GetMember, first, receiver, SiteOf(expression.name));
    } else {
        Receiver(expression, first, false);
        next_ = first + std::size_t{1};
        if (!arguments.empty()) PassArguments(arguments, NewRegister(arguments.size()), elements);
        const bool isItem = kind == CallKind::Get && arguments.size() == 1;
        Emit(isItem ? Opcode::GetItem : Opcode::CallMember, first, static_cast<std::size_t>(kind), arguments.size());
        EmitWordD(static_cast<std::int32_t>(SiteOf(expression.name)), elements.size());
        WriteElementsBack(elements);
    }
    next_ = first + std::size_t{1};
    return Moved(first, wanted);
}

RoutineCompiler::Register RoutineCompiler::EvaluateCall(const Expression& expression, int wanted) {
    const Expression& callee = *expression.left;
    switch (callee.kind) {
        case ExpressionKind::Name:
            return CallNamed(callee, expression.arguments, wanted, false);
        case ExpressionKind::Member:
        case ExpressionKind::WithMember:
            return EvaluateMember(callee, expression.arguments, wanted, CallKind::Get);
        default: {
            const Register container = NewRegister();
            Evaluate(callee, container);
            Dirty(container);
            next_ = container + std::size_t{1};
            const Register result = IndexVariable(container, expression.arguments, Anywhere);
            return Moved(result, wanted);
        }
    }
}

/// An element of the array, or the default member of the object, in `variable`.
RoutineCompiler::Register RoutineCompiler::IndexVariable(Register variable, Arguments arguments, int wanted) {
    const std::size_t before = next_;
    if (arguments.size() == 1 && arguments[0]) {
        const Register index = Evaluate(*arguments[0]);
        next_ = before;
        const int result = ResultRegister(wanted);
        Emit(Opcode::Index, static_cast<std::size_t>(result), variable, index);
        return static_cast<Register>(result);
    }
    const Register first = NewRegister(std::max<std::size_t>(arguments.size(), 1));
    PassValues(arguments, first);
    Emit(Opcode::IndexMany, first, variable, arguments.size());
    next_ = first + std::size_t{1};
    return Moved(first, wanted);
}

/// What stands behind a name, called with arguments: procedures, built-ins, elements of arrays.
RoutineCompiler::Register RoutineCompiler::CallNamed(const Expression& callee, Arguments arguments,
                                                     int wanted, bool asStatement) {
    const Meaning meaning = Resolve(callee.name, true);
    if (meaning.where == Where::Builtin) return CallBuiltin(meaning.index, arguments, wanted);
    if (meaning.where == Where::Special)
        return CallSpecial(static_cast<SpecialCall>(meaning.index), arguments, wanted);
    if (IsVariable(meaning) && !asStatement)
        return IndexVariable(VariableRegister(meaning), arguments, wanted);

    std::vector<WriteBack> elements = ReserveElements(arguments);
    Register variable = 0;
    if (IsVariable(meaning)) {
        variable = VariableRegister(meaning);
    } else if (meaning.where == Where::Constant) {
        variable = Constant(*meaning.value, Anywhere);
        Dirty(variable);
        if (!asStatement) return Moved(IndexVariable(variable, arguments, Anywhere), wanted);
    }
    const bool inPlace = wanted != Anywhere && static_cast<std::size_t>(wanted) + 1 == next_;
    const Register first = inPlace ? static_cast<Register>(wanted) : NewRegister();
    if (arguments.size() > 1) NewRegister(arguments.size() - 1);
    if (meaning.where == Where::Routine) {
        const Routine* const known = program_.symbols[static_cast<std::size_t>(meaning.index)].routine;
        calleePassing_ = known ? &known->passing : nullptr;
    }
    PassArguments(arguments, first, elements);
    const auto index = static_cast<std::size_t>(meaning.index);
    switch (meaning.where) {
        case Where::Routine:
            Emit(Opcode::CallRoutine, first, index, arguments.size());
            break;
        case Where::Own:
            Emit(Opcode::CallOwn, first, index, arguments.size());
            break;
        case Where::HostMember:
            if (arguments.empty() && !asStatement) {
                Emit(Opcode::GetHostMember, first, index);
                break;
            }
            Emit(Opcode::CallHostMember, first, index, arguments.size());
            EmitWord(0, static_cast<std::size_t>(asStatement ? CallKind::Call : CallKind::Get));
            break;
        case Where::Late: {
            const auto standIn = standIns_.find(callee.name);
            Emit(Opcode::CallName, first, index, arguments.size());
            EmitWord(standIn == standIns_.end() ? 0 : standIn->second + std::size_t{1},
                     static_cast<std::size_t>(asStatement ? NameUse::Statement : NameUse::Called));
            break;
        }
        case Where::Class:
            EmitRaise(ErrorCode::TypeMismatch);
            break;
        default:
            Emit(Opcode::CallValue, first, variable, arguments.size());
    }
    WriteElementsBack(elements);
    next_ = first + std::size_t{1};
    return Moved(first, wanted);
}

RoutineCompiler::Register RoutineCompiler::CallBuiltin(int builtin, Arguments arguments, int wanted) {
    const Builtin& entry = Builtins()[static_cast<std::size_t>(builtin)];
    const bool inPlace = wanted != Anywhere && static_cast<std::size_t>(wanted) + 1 == next_;
    const Register first = inPlace ? static_cast<Register>(wanted) : NewRegister();
    if (arguments.size() > 1) NewRegister(arguments.size() - 1);
    if (arguments.size() < entry.minArguments ||
        (entry.maxArguments != Builtin::AnyCount && arguments.size() > entry.maxArguments)) {
        EmitRaise(ErrorCode::WrongArgumentCount);
    } else {
        PassValues(arguments, first);
        Emit(Opcode::CallBuiltin, first, static_cast<std::size_t>(builtin), arguments.size());
    }
    next_ = first + std::size_t{1};
    return Moved(first, wanted);
}

RoutineCompiler::Register RoutineCompiler::CallSpecial(SpecialCall which, Arguments arguments, int wanted) {
    const Register first = NewRegister(std::max<std::size_t>(arguments.size(), 1));
    const std::size_t least = which == SpecialCall::Randomize ? 0 : 1;
    if (arguments.size() < least || arguments.size() > 1) {
        EmitRaise(ErrorCode::WrongArgumentCount);
    } else {
        PassValues(arguments, first);
        Emit(Opcode::CallSpecial, first, static_cast<std::size_t>(which), arguments.size());
    }
    next_ = first + std::size_t{1};
    return Moved(first, wanted);
}

/// A constant that an instruction may name directly; null for anything else.
const Value* RoutineCompiler::ConstantOperand(const Expression& expression) {
    const Value* value = nullptr;
    if (expression.kind == ExpressionKind::Constant) {
        value = &tree_.constants[expression.index];
    } else if (expression.kind == ExpressionKind::Name) {
        const Meaning meaning = Resolve(expression.name);
        if (meaning.where == Where::Constant) value = meaning.value;
    } else if (expression.kind == ExpressionKind::Parenthesized) {
        return ConstantOperand(*expression.left);
    } else if (expression.kind == ExpressionKind::Unary && expression.operation == TokenKind::Minus &&
               expression.left->kind == ExpressionKind::Constant) {
        const Value& literal = tree_.constants[expression.left->index];
        if (!IsIntegerOrLong(literal) && !literal.Is(VarType::Double)) return nullptr;
        localConstants_.push_back(Negate(context_, literal));
        value = &localConstants_.back();
    }
    return value && !value->Is(VarType::Object) ? value : nullptr;
}

RoutineCompiler::Register RoutineCompiler::EvaluateUnary(const Expression& expression, int wanted) {
    if (const Value* const constant = ConstantOperand(expression)) return Constant(*constant, wanted);
    if (expression.operation == TokenKind::Plus) return Evaluate(*expression.left, wanted);
    const std::size_t before = next_;
    const Register operand = Evaluate(*expression.left);
    next_ = before;
    const int result = ResultRegister(wanted);
    Emit(expression.operation == TokenKind::Not ? Opcode::Not : Opcode::Negate,
         static_cast<std::size_t>(result), operand);
    return static_cast<Register>(result);
}

/// A long chain such as a & b & c .. leans to the left; it is walked, not recursed into.
RoutineCompiler::Register RoutineCompiler::EvaluateBinary(const Expression& expression, int wanted) {
    std::vector<const Expression*> chain;
    const Expression* base = &expression;
    for (; base->kind == ExpressionKind::Binary; base = base->left) chain.push_back(base);
    const std::size_t before = next_;
    Register left = Evaluate(*base);
    for (auto it = chain.rbegin(); it != chain.rend(); ++it) {
        const Expression& step = **it;
        const bool isLast = &step == &expression;
        if (left < before && MayChange(*base, step.right)) left = Moved(left, NewRegister());
        const Opcode code = OpcodeOf(step.operation);
        const Value* const constant = ConstantOperand(*step.right);
        const bool isShort = constant && routine_.constants.size() < MostShortIndexes;
        const std::size_t right =
            isShort ? static_cast<std::size_t>(ConstantIndex(*constant)) : Evaluate(*step.right);
        if (code == Opcode::Is) {
            if (left >= before) Dirty(left);
            if (!isShort && right >= before) Dirty(static_cast<Register>(right));
        }
        int result = wanted;
        if (!isLast || wanted == Anywhere || code == Opcode::Is) {
            // An operand of Is keeps its register until it is released.
            if (code != Opcode::Is) next_ = before;
            result = NewRegister();
        }
        Emit(isShort ? WithConstant(code) : code, static_cast<std::size_t>(result), left, right);
        left = static_cast<Register>(result);
    }
    return Moved(left, wanted);
}

/// Whether evaluating it may run script code, which may change variables.
bool RoutineCompiler::MayCall(const Expression* expression) {
    for (; expression; expression = expression->left) {
        switch (expression->kind) {
            case ExpressionKind::Constant:
            case ExpressionKind::Me:
                return false;
            case ExpressionKind::Name: {
                const Where where = Resolve(expression->name).where;
                return where > Where::Constant && where != Where::Builtin;
            }
            case ExpressionKind::Call: {
                if (expression->left->kind != ExpressionKind::Name) return true;
                const Meaning meaning = Resolve(expression->left->name, true);
                if (meaning.where > Where::Constant && meaning.where != Where::Builtin) return true;
                for (const Expression* argument : expression->arguments)
                    if (MayCall(argument)) return true;
                return false;
            }
            case ExpressionKind::Binary:
                if (MayCall(expression->right)) return true;
                break;
            case ExpressionKind::Parenthesized:
            case ExpressionKind::Unary:
                break;
            default:
                return true;
        }
    }
    return false;
}

/// Whether evaluating `expression` may change what a variable holds. A local one of a procedure is out of
/// reach for everybody to whom the expression itself does not pass it.
bool RoutineCompiler::MayChange(const Expression& variable, const Expression* expression) {
    if (!MayCall(expression)) return false;
    const Expression* name = &variable;
    while (name->kind == ExpressionKind::Parenthesized) name = name->left;
    const bool isOwn = name->kind == ExpressionKind::Name && !routine_.onGlobals &&
                       Resolve(name->name).where == Where::Local;
    return !isOwn || Mentions(expression, name->name);
}

/// Eval mentions every name.
bool RoutineCompiler::Mentions(const Expression* expression, NameId name) {
    for (; expression; expression = expression->left) {
        if (expression->kind == ExpressionKind::Name &&
            (expression->name == name || Resolve(expression->name, true).where == Where::Special))
            return true;
        for (const Expression* argument : expression->arguments)
            if (Mentions(argument, name)) return true;
        if (Mentions(expression->right, name)) return true;
    }
    return false;
}

// Arguments

bool RoutineCompiler::IsElement(const Expression* argument) {
    return argument && argument->kind == ExpressionKind::Call && !argument->arguments.empty() &&
           argument->left->kind == ExpressionKind::Name && IsVariable(Resolve(argument->left->name, true));
}

/// Elements of arrays are passed by reference as copies that are written back after the call: the array
/// itself may have been given other bounds meanwhile. Their indexes and copies need registers below the call.
std::vector<RoutineCompiler::WriteBack> RoutineCompiler::ReserveElements(Arguments arguments) {
    std::vector<WriteBack> elements;
    for (const Expression* argument : arguments) {
        if (!IsElement(argument)) continue;
        const Meaning meaning = Resolve(argument->left->name, true);
        const Register variable = VariableRegister(meaning);
        elements.push_back(
            {variable, NewRegister(argument->arguments.size() + 1), argument->arguments.size()});
    }
    return elements;
}

void RoutineCompiler::PassArguments(Arguments arguments, Register first, std::vector<WriteBack>& elements) {
    const BudgetVector<Routine::Passing>* const passing = std::exchange(calleePassing_, nullptr);
    const std::size_t end = std::max(next_, first + arguments.size());
    const auto isUnseen = [&](std::size_t i) {
        return passing && i < passing->size() && (*passing)[i] == Routine::Passing::Unseen;
    };
    std::size_t element = 0;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const Expression* const argument = arguments[i];
        const auto to = static_cast<Register>(first + i);
        next_ = end;
        if (!argument) {
            Constant(Value::Missing(), to);
        } else if (IsElement(argument)) {
            const WriteBack& place = elements[element++];
            PassValues(argument->arguments, place.first);
            const auto copy = static_cast<Register>(place.first + place.count);
            if (place.count == 1) {
                Emit(Opcode::Index, copy, place.variable, place.first);
            } else {
                for (std::size_t k = 0; k < place.count; ++k)
                    Emit(Opcode::Copy, NewRegister(), place.first + k);
                const std::size_t from = next_ - place.count;
                Emit(Opcode::IndexMany, from, place.variable, place.count);
                Emit(Opcode::Copy, copy, from);
                Dirty(static_cast<Register>(from));
            }
            Dirty(copy);
            Emit(Opcode::RefLocal, to, copy);
        } else if (argument->kind == ExpressionKind::Name && !isUnseen(i)) {
            PassByReference(*argument, Resolve(argument->name), to);
        } else {
            next_ = to + std::size_t{1};
            Evaluate(*argument, to);
        }
    }
    next_ = end;
}

void RoutineCompiler::PassByReference(const Expression& name, const Meaning& meaning, Register to) {
    const auto index = static_cast<std::size_t>(meaning.index);
    switch (meaning.where) {
        case Where::Local:
            Emit(Opcode::RefLocal, to, index);
            break;
        case Where::Parameter:
            Emit(Opcode::RefParameter, to, index);
            break;
        case Where::Global:
            Emit(Opcode::RefGlobal, to, index);
            break;
        case Where::Field:
            Emit(Opcode::RefField, to, index);
            break;
        case Where::Late: {
            const auto standIn = standIns_.find(name.name);
            next_ = to + std::size_t{1};
            Emit(Opcode::RefName, to, index,
                 standIn == standIns_.end() ? 0 : standIn->second + std::size_t{1});
            break;
        }
        default:
            next_ = to + std::size_t{1};
            EvaluateName(name, to);
    }
}

/// Into registers that are taken already, by value.
void RoutineCompiler::PassValues(Arguments arguments, Register first) {
    const std::size_t end = std::max(next_, first + arguments.size());
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const auto to = static_cast<Register>(first + i);
        next_ = end == first + arguments.size() ? to + std::size_t{1} : end;
        if (arguments[i])
            Evaluate(*arguments[i], to);
        else
            Constant(Value::Missing(), to);
    }
    next_ = end;
}

void RoutineCompiler::WriteElementsBack(const std::vector<WriteBack>& elements) {
    for (const WriteBack& element : elements)
        Emit(Opcode::WriteBack, element.first, element.variable, element.count);
}

// Conditions

/// Jumps when the condition does not hold. What the condition left in temporaries is released before, so that
/// neither way keeps an object alive.
std::size_t RoutineCompiler::JumpUnless(const Expression& condition) {
    const Expression* inner = &condition;
    while (inner->kind == ExpressionKind::Parenthesized) inner = inner->left;
    if (inner->kind == ExpressionKind::Binary && IsComparison(inner->operation)) {
        const Register truth = NewRegister();
        const std::size_t before = next_;
        Register left = Evaluate(*inner->left);
        if (left < before && MayChange(*inner->left, inner->right)) left = Moved(left, NewRegister());
        const Opcode code = OpcodeOf(inner->operation);
        const Value* const constant = ConstantOperand(*inner->right);
        const bool isShort = constant && routine_.constants.size() < MostShortIndexes;
        const std::size_t right =
            isShort ? static_cast<std::size_t>(ConstantIndex(*constant)) : Evaluate(*inner->right);
        if (dirtyFrom_ == dirtyTo_) {
            Emit(isShort ? Shifted(code, Opcode::Equal, Opcode::UnlessEqualK)
                         : Shifted(code, Opcode::Equal, Opcode::UnlessEqual),
                 left, right);
            EmitWordD(0);
            return Here() - 1;
        }
        Emit(isShort ? WithConstant(code) : code, truth, left, right);
        ReleaseDirty();
        return Emit(Opcode::JumpIfFalse, truth);
    }
    const std::size_t before = next_;
    const Register truth = NewRegister();
    Register value = Evaluate(condition);
    if (dirtyFrom_ != dirtyTo_) {
        Emit(Opcode::Copy, truth, value);
        if (value >= before) Dirty(value);
        value = truth;
        ReleaseDirty();
    }
    return Emit(Opcode::JumpIfFalse, value);
}

}  // namespace tessaloom::vbscript
