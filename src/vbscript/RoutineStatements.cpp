#include <algorithm>

#include "vbscript/Error.h"
#include "vbscript/RoutineCompiler.h"

namespace tessaloom::vbscript {

using syntax::ExpressionKind;
using syntax::StatementKind;

namespace {

/// The instruction for a parameter, global or field, from that for a local.
Opcode ForVariable(Opcode local, int where) { return static_cast<Opcode>(static_cast<int>(local) + where); }

}  // namespace

void RoutineCompiler::CompileBlock(const syntax::Block& block) {
    for (const Statement* statement : block) {
        const std::size_t before = next_;
        CompileStatement(*statement);
        next_ = before;
    }
}

void RoutineCompiler::CompileStatement(const Statement& statement) {
    switch (statement.kind) {
        case StatementKind::If:
            return CompileIf(statement);
        case StatementKind::Select:
            return CompileSelect(statement);
        case StatementKind::For:
            return CompileFor(statement);
        case StatementKind::ForEach:
            return CompileForEach(statement);
        case StatementKind::Do:
        case StatementKind::While:
            return CompileDo(statement);
        case StatementKind::With:
            return CompileWith(statement);
        default:
            break;
    }
    const std::size_t mark = BeginMark(statement.at);
    switch (statement.kind) {
        case StatementKind::Let:
        case StatementKind::Set:
            CompileAssignment(statement);
            break;
        case StatementKind::Invoke:
            CompileInvoke(statement);
            break;
        case StatementKind::ReDim:
            CompileReDim(statement);
            break;
        case StatementKind::Erase:
            CompileErase(statement);
            break;
        case StatementKind::ResumeNext:
            Emit(Opcode::ResumeNext);
            break;
        case StatementKind::ErrorGoTo0:
            Emit(Opcode::ErrorGoTo0);
            break;
        default:
            CompileExit(statement.kind);
    }
    ReleaseDirty();
    EndMark(mark);
}

// Assignments

void RoutineCompiler::CompileAssignment(const Statement& statement) {
    const Expression& target = *statement.target;
    const bool isSet = statement.kind == StatementKind::Set;
    switch (target.kind) {
        case ExpressionKind::Name:
            return AssignName(target, *statement.value, isSet);
        case ExpressionKind::Member:
        case ExpressionKind::WithMember:
            return AssignMember(target, target.name, {}, *statement.value, isSet, false);
        case ExpressionKind::Call:
            return AssignElement(target, *statement.value, isSet);
        default:
            EmitRaise(ErrorCode::IllegalAssignment);
    }
}

void RoutineCompiler::AssignName(const Expression& target, const Expression& value, bool isSet) {
    const Meaning meaning = Resolve(target.name);
    if (IsVariable(meaning)) {
        if (!isSet && AppendInPlace(meaning, target, value)) return;
        const bool isPlain =
            !isSet && (value.kind == ExpressionKind::Binary ||
                       (value.kind == ExpressionKind::Unary && value.operation != TokenKind::Plus));
        if (isPlain && meaning.where == Where::Local && !HoldsArray(meaning)) {
            Evaluate(value, meaning.index);
            return;
        }
        const Register from = Evaluate(value);
        return StoreVariable(meaning, from, isSet ? Opcode::Set : Opcode::Let);
    }
    switch (meaning.where) {
        case Where::Own:
            return AssignMember(target, target.name, {}, value, isSet, true);
        case Where::HostMember: {
            const Register from = NewRegister();
            Evaluate(value, from);
            Emit(Opcode::CallHostMember, from, static_cast<std::size_t>(meaning.index), 1);
            EmitWord(0, static_cast<std::size_t>(isSet ? CallKind::Set : CallKind::Let));
            return;
        }
        case Where::Late: {
            const Register from = NewRegister();
            Evaluate(value, from);
            Emit(isSet ? Opcode::SetName : Opcode::LetName, from, static_cast<std::size_t>(meaning.index));
            Dirty(from);
            return;
        }
        default: {
            Evaluate(value);
            EmitRaise(ErrorCode::IllegalAssignment);
        }
    }
}

/// A variable that is known to be an array; if that is fixed, nothing else may be assigned to it.
bool RoutineCompiler::HoldsArray(const Meaning& meaning) const {
    const auto slot = static_cast<Register>(meaning.index);
    return arrays_.contains(slot) || (routine_.onGlobals && globals_[slot].Is(VarType::Array));
}

/// `local`: Let, Set or Put. What lies in a temporary is moved.
void RoutineCompiler::StoreVariable(const Meaning& meaning, Register from, Opcode local) {
    Emit(ForVariable(local, static_cast<int>(meaning.where)), static_cast<std::size_t>(meaning.index), from,
         IsTemporary(from) ? 1 : 0);
}

/// s = s & a & b .. appends to the text of s where it lies, so that building a text in a loop is linear.
bool RoutineCompiler::AppendInPlace(const Meaning& meaning, const Expression& target,
                                    const Expression& value) {
    if (meaning.where != Where::Local && meaning.where != Where::Parameter) return false;
    std::vector<Expression*> tail;
    const Expression* base = &value;
    for (; base->kind == ExpressionKind::Binary && base->operation == TokenKind::Ampersand; base = base->left)
        tail.push_back(base->right);
    if (tail.empty() || base->kind != ExpressionKind::Name || base->name != target.name) return false;
    if (std::ranges::any_of(tail, [&](const auto* part) { return MayChange(target, part); })) return false;
    std::ranges::reverse(tail);
    const auto text = static_cast<std::size_t>(meaning.index);
    if (tail.size() == 1) {
        Emit(Opcode::Append, text, Evaluate(*tail[0]));
        return true;
    }
    const Register first = NewRegister(tail.size());
    PassValues(tail, first);
    Emit(Opcode::AppendMany, text, first, tail.size());
    Dirty(first);
    Dirty(static_cast<Register>(first + tail.size() - 1));
    return true;
}

/// A register through which the elements of a variable can be written: of a(1)(2) that of a(1).
RoutineCompiler::Register RoutineCompiler::ElementVariable(const Expression& expression) {
    if (expression.kind == ExpressionKind::Name) {
        const Meaning meaning = Resolve(expression.name);
        if (IsVariable(meaning)) return VariableRegister(meaning);
        if (meaning.where == Where::Late) {
            const Register reference = NewRegister();
            PassByReference(expression, meaning, reference);
            Dirty(reference);
            return reference;
        }
    }
    if (expression.kind == ExpressionKind::Call && expression.left->kind != ExpressionKind::Member &&
        expression.left->kind != ExpressionKind::WithMember) {
        const bool isCallable = expression.left->kind == ExpressionKind::Name &&
                                !IsVariable(Resolve(expression.left->name, true));
        if (!isCallable && !expression.arguments.empty()) {
            // All script code has run before the first reference into an array is made.
            const Register first = NewRegister(expression.arguments.size());
            PassValues(expression.arguments, first);
            Emit(Opcode::Plain, first, expression.arguments.size());
            const Register outer = ElementVariable(*expression.left);
            Emit(Opcode::RefElement, first, outer, expression.arguments.size());
            return first;
        }
    }
    const Register temporary = NewRegister();
    Evaluate(expression, temporary);
    Dirty(temporary);
    return temporary;
}

void RoutineCompiler::AssignElement(const Expression& target, const Expression& value, bool isSet) {
    const Expression& base = *target.left;
    if (base.kind == ExpressionKind::Member || base.kind == ExpressionKind::WithMember)
        return AssignMember(base, base.name, target.arguments, value, isSet, false);
    if (base.kind == ExpressionKind::Name) {
        const Meaning meaning = Resolve(base.name);
        if (meaning.where == Where::Own)
            return AssignMember(base, base.name, target.arguments, value, isSet, true);
        if (meaning.where == Where::HostMember) {
            const Register first = NewRegister(target.arguments.size() + 1);
            PassValues(target.arguments, first);
            Evaluate(value, static_cast<int>(first + target.arguments.size()));
            Emit(Opcode::CallHostMember, first, static_cast<std::size_t>(meaning.index),
                 target.arguments.size() + 1);
            EmitWord(0, static_cast<std::size_t>(isSet ? CallKind::Set : CallKind::Let));
            return;
        }
        if (IsVariable(meaning) && target.arguments.size() == 1 && target.arguments[0] && !isSet) {
            Register from = Evaluate(value);
            const bool holdsItself = value.kind == ExpressionKind::Name && value.name == base.name;
            if (holdsItself || MayCall(target.arguments[0])) from = Moved(from, NewRegister());
            const Register index = Evaluate(*target.arguments[0]);
            Emit(Opcode::LetIndex, from, VariableRegister(meaning), index);
            return;
        }
    }
    const std::size_t count = target.arguments.size();
    const Register first = NewRegister(count + 1);
    Evaluate(value, static_cast<int>(first + count));
    Dirty(static_cast<Register>(first + count));
    PassValues(target.arguments, first);
    if (base.kind == ExpressionKind::Call) Emit(Opcode::Plain, first, isSet ? count : count + 1);
    const Register variable = ElementVariable(base);
    Emit(isSet ? Opcode::SetIndexMany : Opcode::LetIndexMany, first, variable, count);
}

/// `target`: a Member or WithMember; with `own`, a name within its class.
void RoutineCompiler::AssignMember(const Expression& target, NameId name, Arguments arguments,
                                   const Expression& value, bool isSet, bool own) {
    const Register first = NewRegister();
    const bool isShort = !own && !isSet && arguments.empty();
    Register receiver = first;
    if (own)
        Emit(Opcode::LoadMe, first);
    else
        receiver = Receiver(target, first, isShort && !MayCall(&value));
    next_ = first + std::size_t{1};
    const Register passed = NewRegister(arguments.size() + 1);
    const auto last = static_cast<Register>(passed + arguments.size());
    Evaluate(value, last);
    next_ = last + std::size_t{1};
    PassValues(arguments, passed);
    const std::size_t site = SiteOf(name);
    if (isShort && site < MostShortIndexes) {
        Emit(Opcode::LetMember, first, receiver, site);
        return;
    }
    if (receiver != first) Emit(Opcode::Copy, first, receiver);
    const CallKind kind = isSet ? CallKind::Set : CallKind::Let;
    Emit(Opcode::CallMember, first, static_cast<std::size_t>(kind) | (own ? OwnAccess : 0),
         arguments.size() + 1);
    EmitWordD(static_cast<std::int32_t>(site));
}

// Calls and arrays

void RoutineCompiler::CompileInvoke(const Statement& statement) {
    const Expression& target = *statement.target;
    switch (target.kind) {
        case ExpressionKind::Name: {
            const Register result = CallNamed(target, statement.arguments, Anywhere, true);
            const Meaning meaning = Resolve(target.name, true);
            const Routine* const known =
                meaning.where == Where::Routine
                    ? program_.symbols[static_cast<std::size_t>(meaning.index)].routine
                    : nullptr;
            if (!known || known->kind != syntax::RoutineKind::Sub) Dirty(result);
            return;
        }
        case ExpressionKind::Member:
        case ExpressionKind::WithMember:
            EvaluateMember(target, statement.arguments, Anywhere, CallKind::Call);
            return;
        case ExpressionKind::Me:
            return EmitRaise(ErrorCode::NoSuchMember);
        default: {
            const Register object = NewRegister();
            Evaluate(target, object);
            Dirty(object);
            const Register first = NewRegister(std::max<std::size_t>(statement.arguments.size(), 1));
            PassValues(statement.arguments, first);
            Emit(Opcode::CallValue, first, object, statement.arguments.size());
            Dirty(first);
        }
    }
}

void RoutineCompiler::CompileReDim(const Statement& statement) {
    const Expression& call = *statement.target;
    const Register first = NewRegister(call.arguments.size());
    PassValues(call.arguments, first);
    if (call.left->kind == ExpressionKind::Call) Emit(Opcode::Plain, first, call.arguments.size());
    const auto redim = [&](Register variable) {
        Emit(Opcode::ReDim, first, variable, call.arguments.size());
        EmitWord(0, statement.flag ? 1 : 0);
    };
    const Expression& base = *call.left;
    if (base.kind == ExpressionKind::Name) {
        const Meaning meaning = Resolve(base.name);
        if (!IsVariable(meaning) && meaning.where != Where::Late)
            return EmitRaise(ErrorCode::IllegalAssignment);
        return redim(ElementVariable(base));
    }
    redim(ElementVariable(base));
}

void RoutineCompiler::CompileErase(const Statement& statement) {
    Emit(Opcode::Erase, ElementVariable(*statement.target));
}

// Blocks

void RoutineCompiler::CompileIf(const Statement& statement) {
    std::vector<std::size_t> ends;
    for (std::size_t i = 0; i < statement.branches.size(); ++i) {
        const syntax::Branch& branch = statement.branches[i];
        const std::size_t before = next_;
        if (branch.tests.empty()) {
            CompileBlock(branch.body);
            break;
        }
        const std::size_t mark = BeginMark(branch.at);
        const std::size_t jump = JumpUnless(*branch.tests[0]);
        EndMark(mark);
        next_ = before;
        CompileBlock(branch.body);
        if (i + 1 < statement.branches.size()) ends.push_back(EmitD(Opcode::Jump, 0, 0));
        Target(jump);
    }
    for (const std::size_t end : ends) Target(end);
}

/// A value that cannot be had goes on behind the whole; a test that fails, in its own branch.
void RoutineCompiler::CompileSelect(const Statement& statement) {
    const std::size_t head = BeginMark(statement.at);
    const Register value = NewRegister();
    Evaluate(*statement.value, value);
    ReleaseDirty();
    const std::size_t before = next_ = value + std::size_t{1};
    std::vector<std::size_t> ends;
    for (const syntax::Branch& branch : statement.branches) {
        if (branch.tests.empty()) {
            CompileBlock(branch.body);
            break;
        }
        std::vector<std::size_t> matches, marks;
        for (const Expression* test : branch.tests) {
            marks.push_back(BeginMark(branch.at));
            const Register candidate = Evaluate(*test);
            ReleaseDirty();
            Emit(Opcode::CaseEqual, value, candidate);
            EmitWordD(0);
            matches.push_back(Here() - 1);
            next_ = before;
        }
        const std::size_t skip = EmitD(Opcode::Jump, 0, 0);
        for (const std::size_t match : matches) Target(match);
        for (const std::size_t mark : marks) EndMark(mark);
        CompileBlock(branch.body);
        ends.push_back(EmitD(Opcode::Jump, 0, 0));
        Target(skip);
    }
    EndMark(head);
    for (const std::size_t end : ends) Target(end);
    Emit(Opcode::Release, value, 1);
}

/// The counter of a loop that no text has declared yet, though it should.
void RoutineCompiler::RequireDeclared(const Meaning& meaning) {
    if (meaning.where != Where::Late) return;
    const std::size_t before = next_;
    Emit(Opcode::LoadName, NewRegister(), static_cast<std::size_t>(meaning.index));
    next_ = before;
}

void RoutineCompiler::CompileFor(const Statement& statement) {
    const Meaning meaning = Resolve(statement.name);
    const Register kept = NewRegister(2);
    const std::size_t head = BeginMark(statement.at);
    RequireDeclared(meaning);
    Emit(Opcode::Release, kept, 2);
    const Register start = NewRegister(3);
    const auto part = [&](const Expression* expression, std::size_t offset) {
        const auto to = static_cast<Register>(start + offset);
        if (expression)
            Evaluate(*expression, to);
        else
            Constant(Value::OfInteger(1), to);
        next_ = start + std::size_t{3};
    };
    part(statement.value, 0);
    part(statement.limit, 1);
    part(statement.step, 2);
    if (!IsVariable(meaning)) EmitRaise(ErrorCode::IllegalAssignment);
    Emit(Opcode::ForPrepare, kept, start);
    const auto store = [&](Register from) {
        if (IsVariable(meaning)) {
            Emit(ForVariable(Opcode::Put, static_cast<int>(meaning.where)),
                 static_cast<std::size_t>(meaning.index), from);
        } else {
            EmitRaise(ErrorCode::IllegalAssignment);
        }
    };
    store(start);
    Emit(Opcode::ForEnter, kept, start);
    EmitWordD(0);
    const std::size_t enter = Here() - 1;
    ReleaseDirty();
    EndMark(head);
    next_ = kept + std::size_t{2};
    loops_.push_back({true, next_, {}});
    const std::size_t body = Here();
    CompileBlock(statement.body);
    const std::size_t foot = BeginMark(statement.endAt);
    if (meaning.where == Where::Local) {
        Emit(Opcode::ForNext, kept, static_cast<std::size_t>(meaning.index));
    } else if (IsVariable(meaning)) {
        const Register counter = NewRegister();
        Emit(meaning.where == Where::Parameter ? Opcode::LoadParameter
             : meaning.where == Where::Global  ? Opcode::LoadGlobal
                                               : Opcode::LoadField,
             counter, static_cast<std::size_t>(meaning.index));
        Emit(Opcode::ForStep, kept, counter);
        store(counter);
        Emit(Opcode::ForBack, kept, counter);
    } else {
        EmitRaise(ErrorCode::ForNotInitialized);
    }
    if (IsVariable(meaning)) EmitWordD(static_cast<std::int32_t>(body));
    EndMark(foot);
    Target(enter);
    for (const std::size_t exit : loops_.back().exits) Target(exit);
    loops_.pop_back();
}

void RoutineCompiler::CompileForEach(const Statement& statement) {
    const Meaning meaning = Resolve(statement.name);
    const Register kept = NewRegister();
    const std::size_t head = BeginMark(statement.at);
    RequireDeclared(meaning);
    Emit(Opcode::Release, kept, 1);
    const Register source = NewRegister();
    // The array itself is walked along, not a copy.
    const Expression& value = *statement.value;
    const Meaning array = value.kind == ExpressionKind::Name ? Resolve(value.name) : Meaning();
    if (value.kind == ExpressionKind::Name && IsVariable(array))
        Emit(Opcode::ForEachPrepare, kept, VariableRegister(array));
    else
        Emit(Opcode::ForEachPrepare, kept, Evaluate(value, source));
    Dirty(source);
    ReleaseDirty();
    const std::size_t enter = EmitD(Opcode::Jump, 0, 0);
    EndMark(head);
    next_ = kept + std::size_t{1};
    loops_.push_back({true, next_, {}});
    const std::size_t body = Here();
    CompileBlock(statement.body);
    Target(enter);
    const std::size_t foot = BeginMark(statement.endAt);
    const Register item = NewRegister();
    Emit(Opcode::ForEachNext, kept, item);
    if (IsVariable(meaning))
        Emit(ForVariable(Opcode::Put, static_cast<int>(meaning.where)),
             static_cast<std::size_t>(meaning.index), item, 1);
    else
        EmitRaise(ErrorCode::IllegalAssignment);
    JumpBack(Opcode::ForEachBack, kept, body);
    EndMark(foot);
    for (const std::size_t exit : loops_.back().exits) Target(exit);
    loops_.pop_back();
    Emit(Opcode::Release, kept, 1);
}

/// All forms of Do, and While.
void RoutineCompiler::CompileDo(const Statement& statement) {
    const bool isDo = statement.kind == StatementKind::Do;
    const std::size_t top = Here();
    const std::size_t before = next_;
    std::vector<std::size_t> exits;
    const auto test = [&](Position at) {
        const std::size_t mark = BeginMark(at);
        if (statement.flag) {
            const Register truth = NewRegister();
            const Register value = Evaluate(*statement.value);
            if (dirtyFrom_ != dirtyTo_) {
                Emit(Opcode::Copy, truth, value);
                ReleaseDirty();
                exits.push_back(Emit(Opcode::JumpIfTrue, truth));
            } else {
                exits.push_back(Emit(Opcode::JumpIfTrue, value));
            }
        } else {
            exits.push_back(JumpUnless(*statement.value));
        }
        EndMark(mark);
        next_ = before;
        return mark;
    };
    if (statement.value && !statement.flag2) test(statement.at);
    if (isDo) loops_.push_back({false, before, {}});
    CompileBlock(statement.body);
    const std::size_t foot =
        statement.value && statement.flag2 ? test(statement.endAt) : BeginMark(statement.endAt);
    JumpBack(Opcode::LoopBack, 0, top);
    EndMark(foot);
    for (const std::size_t exit : exits) Target(exit);
    if (!isDo) return;
    for (const std::size_t exit : loops_.back().exits) Target(exit);
    loops_.pop_back();
}

void RoutineCompiler::CompileWith(const Statement& statement) {
    const Register kept = NewRegister();
    const std::size_t head = BeginMark(statement.at);
    Emit(Opcode::Release, kept, 1);
    const Register object = Evaluate(*statement.value);
    Emit(Opcode::PrepareWith, kept, object);
    if (object > kept) Dirty(object);
    ReleaseDirty();
    EndMark(head);
    next_ = kept + std::size_t{1};
    withs_.push_back(kept);
    CompileBlock(statement.body);
    withs_.pop_back();
    Emit(Opcode::Release, kept, 1);
}

void RoutineCompiler::CompileExit(StatementKind kind) {
    if (kind == StatementKind::ExitRoutine) {
        Emit(Opcode::Return);
        return;
    }
    const bool isFor = kind == StatementKind::ExitFor;
    for (auto loop = loops_.rbegin(); loop != loops_.rend(); ++loop) {
        if (loop->isFor != isFor) continue;
        if (next_ > loop->kept) Emit(Opcode::Release, loop->kept, next_ - loop->kept);
        loop->exits.push_back(EmitD(Opcode::Jump, 0, 0));
        return;
    }
}

}  // namespace tessaloom::vbscript
