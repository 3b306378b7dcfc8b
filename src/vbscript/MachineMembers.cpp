#include <algorithm>

#include "vbscript/Array.h"
#include "vbscript/Builtins.h"
#include "vbscript/Conversions.h"
#include "vbscript/Error.h"
#include "vbscript/Frames.h"
#include "vbscript/Operators.h"
#include "vbscript/Parser.h"
#include "vbscript/RegExp.h"

namespace tessaloom::vbscript {

namespace {

/// GetRef: a procedure as an object; calling it is its default member.
class RoutineReference final : public Object {
public:
    RoutineReference(Machine& machine, const Routine& routine) : machine_(machine.Self()), routine_(routine) {
        ++routine_.references;
    }
    ~RoutineReference() override {
        if (*machine_) --routine_.references;
    }

    std::u16string_view TypeName() const override { return u"Object"; }
    int Find(std::u16string_view) override { return UnknownMember; }
    Value Invoke(Context&, int member, CallKind kind, std::span<Value> arguments) override {
        if (member != DefaultMember || kind == CallKind::Let || kind == CallKind::Set)
            Fail(ErrorCode::NoSuchMember);
        if (!*machine_) Fail(ErrorCode::ActionNotSupported);
        return (*machine_)->CallNested(routine_, arguments, nullptr);
    }
    bool WritesArguments() const override { return true; }

private:
    std::shared_ptr<Machine*> machine_;
    const Routine& routine_;
};

bool IsFixedArray(const Value& value) { return value.Is(VarType::Array) && value.AsArray()->IsFixed(); }

Object& ObjectOf(const Value& value) {
    if (!value.Is(VarType::Object)) Fail(ErrorCode::ObjectRequired);
    if (value.IsNothing()) Fail(ErrorCode::ObjectNotSet);
    return *value.AsObject();
}

}  // namespace

// Assignments and elements

/// Where objects, which give the values of their default members, or arrays are about.
void Machine::LetCompound(Value& target, Value& source, bool mayMove) {
    if (IsFixedArray(target)) Fail(ErrorCode::TypeMismatch);
    if (source.Is(VarType::Object)) {
        const Value held = source;
        ObjectOf(held);
        Value scratch;
        Value plain = PlainValue(context_, held, scratch);
        if (mayMove) source = Value();
        target = std::move(plain);
    } else {
        target = source.Assigned();
        if (mayMove) source = Value();
    }
}

void Machine::MakePlain(Value& value) {
    Value plain;
    LetValue(plain, value, false);
    value = std::move(plain);
}

void Machine::SetValue(Value& target, Value& source, bool mayMove) {
    if (!source.Is(VarType::Object)) Fail(ErrorCode::ObjectRequired);
    if (IsFixedArray(target)) Fail(ErrorCode::TypeMismatch);
    if (mayMove)
        target = std::move(source);
    else
        target = source;
}

Value& Machine::ElementPlace(Value& variable, std::span<const Value> indexes) {
    if (!variable.Is(VarType::Array)) Fail(ErrorCode::TypeMismatch);
    int list[Array::MaxRank];
    if (indexes.size() > std::size(list)) Fail(ErrorCode::SubscriptOutOfRange);
    for (std::size_t i = 0; i < indexes.size(); ++i) list[i] = ToIndex(context_, indexes[i].Resolved());
    if (!variable.Is(VarType::Array)) Fail(ErrorCode::TypeMismatch);  // converting may have run script code
    return variable.WritableArray().At(std::span<const int>(list, indexes.size()));
}

/// An element of an array, or what the default member of an object gives.
Value Machine::Element(Value& variable, std::span<Value> arguments, CallKind kind) {
    if (variable.Is(VarType::Object)) {
        const Value held = variable;
        return InvokeObject(ObjectOf(held), Object::DefaultMember, kind, arguments);
    }
    if (!variable.Is(VarType::Array)) Fail(ErrorCode::TypeMismatch);
    int list[Array::MaxRank];
    if (arguments.size() > std::size(list)) Fail(ErrorCode::SubscriptOutOfRange);
    const Value held = variable;
    for (std::size_t i = 0; i < arguments.size(); ++i) list[i] = ToIndex(context_, arguments[i].Resolved());
    return held.AsArray()->At(std::span<const int>(list, arguments.size()));
}

/// `arguments`: the indexes and, last, the new value.
void Machine::StoreElement(Value& variable, std::span<Value> arguments, CallKind kind) {
    if (variable.Is(VarType::Object)) {
        const Value held = variable;
        InvokeObject(ObjectOf(held), Object::DefaultMember, kind, arguments);
        return;
    }
    Value value;
    if (kind == CallKind::Set)
        SetValue(value, arguments.back().Resolved(), false);
    else
        LetValue(value, arguments.back().Resolved(), false);
    ElementPlace(variable, arguments.first(arguments.size() - 1)) = std::move(value);
}

/// After a call with an element by reference: what has become of the copy goes back, where that is possible.
void Machine::WriteBack(Value& variable, std::span<Value> arguments) {
    if (!variable.Is(VarType::Array)) return;
    const std::span<Value> indexes = arguments.first(arguments.size() - 1);
    Value& copy = arguments.back();
    int list[Array::MaxRank];
    Array* const array = variable.AsArray();
    if (static_cast<int>(indexes.size()) != array->Rank()) return;
    for (std::size_t i = 0; i < indexes.size(); ++i) {
        list[i] = ToIndex(context_, indexes[i].Resolved());
        if (list[i] < 0 || list[i] > array->UpperBound(static_cast<int>(i) + 1)) return;
    }
    const std::span<const int> place(list, indexes.size());
    const Value& old = array->At(place);
    if (old.Type() == copy.Type() && old.Currency() == copy.Currency()) return;
    variable.WritableArray().At(place) = std::move(copy);
}

void Machine::ReDim(Value& variable, std::span<const Value> bounds, bool preserve) {
    int list[Array::MaxRank];
    if (bounds.size() > std::size(list)) Fail(ErrorCode::SubscriptOutOfRange);
    for (std::size_t i = 0; i < bounds.size(); ++i) list[i] = ToIndex(context_, bounds[i].Resolved());
    Redimension(variable, std::span<const int>(list, bounds.size()), preserve);
}

// Members

/// Calls an object with plain arguments.
Value Machine::InvokeObject(Object& object, int member, CallKind kind, std::span<Value> arguments) {
    const Ref<Object> alive(&object);
    if (object.WritesArguments()) return InvokeWriting(object, member, kind, arguments);
    for (Value& argument : arguments)
        if (argument.Is(VarType::Reference)) argument = Value(argument.Target());
    Value result = object.Invoke(context_, member, kind, arguments);
    TimeLimit::Poll();
    return result;
}

/// What is written to arguments that came by reference goes back.
Value Machine::InvokeWriting(Object& object, int member, CallKind kind, std::span<Value> arguments) {
    constexpr std::size_t Few = 8;
    Value* targets[Few];
    if (arguments.size() > Few) {
        for (Value& argument : arguments) argument = Value(argument.Resolved());
        return object.Invoke(context_, member, kind, arguments);
    }
    Value before[Few];
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        targets[i] = arguments[i].Is(VarType::Reference) ? &arguments[i].Target() : nullptr;
        if (!targets[i]) continue;
        before[i] = *targets[i];
        arguments[i] = before[i];
    }
    Value result = object.Invoke(context_, member, kind, arguments);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (!targets[i]) continue;
        const bool isSame =
            arguments[i].Type() == before[i].Type() && arguments[i].Currency() == before[i].Currency();
        before[i] = Value();
        if (!isSame) *targets[i] = std::move(arguments[i]);
    }
    return result;
}

/// `first`: the object, followed by the arguments; the result takes the object's place.
bool Machine::CallMember(Value* first, std::size_t count, CallKind kind, bool own, Site& site) {
    Object& object = ObjectOf(first->Resolved());
    const void* const shape = object.Shape();
    if (!shape || shape != site.shape) {
        Instance* const instance = dynamic_cast<Instance*>(&object);
        site.isInstance = instance != nullptr;
        site.member = own && instance ? instance->Type().Find(site.name)
                                      : object.Find(program_.names.Spelling(site.name));
        site.shape = nullptr;
        if (site.member < 0) FailNamed(ErrorCode::NoSuchMember, site.name);
        site.shape = shape;
        const PlainMember* const plain = object.Plain(site.member);
        site.plain = plain ? *plain : PlainMember();
    }
    if (site.isInstance)
        return UseMember(static_cast<Instance&>(object), site.member, kind, own, first + 1, count, first,
                         false);
    Value result = InvokeObject(object, site.member, kind, {first + 1, count});
    for (std::size_t i = 1; i <= count; ++i) first[i] = Value();
    if (kind == CallKind::Get)
        *first = std::move(result);
    else
        *first = Value();
    return false;
}

/// True when a routine was entered. `nested`: the arguments lie outside of the stack, so a routine runs to
/// its end at once.
bool Machine::UseMember(Instance& instance, int number, CallKind kind, bool own, Value* arguments,
                        std::size_t count, Value* result, bool nested) {
    const ClassInfo::Member& member = instance.Type().members[static_cast<std::size_t>(number)];
    const bool assigns = kind == CallKind::Let || kind == CallKind::Set;
    if (member.field >= 0) {
        const Ref<Instance> alive(&instance);
        Value& field = instance.Field(static_cast<std::size_t>(member.field));
        Value value;
        if (assigns && count == 1) {
            Value& source = arguments[0].Resolved();
            kind == CallKind::Set ? SetValue(field, source, false) : LetValue(field, source, false);
        } else if (assigns) {
            StoreElement(field, {arguments, count}, kind);
        } else {
            value = count == 0 ? field : Element(field, {arguments, count}, kind);
        }
        if (!nested)
            for (std::size_t i = 0; i < count; ++i) arguments[i] = Value();
        *result = std::move(value);
        return false;
    }
    const Routine* const routine = kind == CallKind::Let   ? member.let
                                   : kind == CallKind::Set ? member.set
                                                           : member.get;
    if (!routine || (routine->isPrivate && !own)) FailNamed(ErrorCode::NoSuchMember, member.name);
    if (nested) {
        *result = CallNested(*routine, {arguments, count}, &instance);
        return false;
    }
    Enter(*routine, arguments, count, result, kind != CallKind::Get, &instance);
    return true;
}

Value Machine::InvokeMember(Instance& instance, int member, CallKind kind, std::span<Value> arguments) {
    Value result;
    UseMember(instance, member, kind, false, arguments.data(), arguments.size(), &result, true);
    return result;
}

void Machine::Terminate(Instance& instance) {
    if (context_.limit.IsOver()) return;  // else objects whose end makes others would never come to an end
    const RuntimeError latest = err_->Latest();
    const std::u16string detail = detail_;
    try {
        CallNested(*instance.Type().terminate, {}, &instance);
    } catch (const RuntimeError&) {  // nobody is there whom it concerns
    } catch (const TimeUp&) {        // whoever let go of the object will notice, too
    } catch (const std::exception&) {}
    detail_ = detail;
    err_->Set(latest);
}

Value Machine::NewObject(NameId name) {
    const int number = program_.symbols.Find(name);
    ClassInfo* const type = number < 0 ? nullptr : program_.symbols[static_cast<std::size_t>(number)].type;
    if (!type) {
        if (SameName(program_.names.Spelling(name), u"RegExp")) return Value::OfObject(MakeRegExp());
        FailNamed(ErrorCode::ClassNotDefined, name);
    }
    const Ref<Instance> instance = Make<Instance>(*this, Ref<ClassInfo>(type));
    const Value held = Value::OfObject(instance);
    if (type->initialize) CallNested(*type->initialize, {}, instance.Get());
    return held;
}

// Names that were unknown when the text was compiled

/// Where all names must be declared: a text that the running routine has executed may have done so.
Value& Machine::DeclaredByText(NameId name) {
    const Frame& frame = Top();
    ExecutedNames* const names = frame.routine->executed ? frame.routine->executed : frame.executed.get();
    Value* const variable = names ? names->Find(name) : nullptr;
    if (!variable) FailUndefined(name);
    return *variable;
}

bool Machine::CallName(Value* first, std::size_t count, std::size_t symbol, std::size_t standIn,
                       NameUse use) {
    const Symbol entry = program_.symbols[symbol];
    Value* variable = nullptr;
    switch (entry.kind) {
        case SymbolKind::Routine:
            Enter(*entry.routine, first, count, first, false, nullptr);
            return true;
        case SymbolKind::HostMember:
            CallHostMember(first, count, symbol, use == NameUse::Statement ? CallKind::Call : CallKind::Get);
            return false;
        case SymbolKind::Variable:
        case SymbolKind::Constant:
            variable = stack_.get() + symbol;
            break;
        case SymbolKind::Class:
            FailNamed(ErrorCode::TypeMismatch, entry.name);
        case SymbolKind::Unknown:
            if (Top().routine->explicitNames)
                variable = &DeclaredByText(entry.name);
            else if (standIn > 0)
                variable = &Top().base[standIn - 1].Resolved();
    }
    if (use == NameUse::Statement) {
        if (!variable || !variable->Is(VarType::Object)) FailNamed(ErrorCode::TypeMismatch, entry.name);
        CallValue(first, count, *variable);
    } else if (use == NameUse::Value) {
        *first = variable ? Value(*variable) : Value();
    } else {
        if (!variable || (!variable->Is(VarType::Object) && !variable->Is(VarType::Array)))
            FailNamed(ErrorCode::TypeMismatch, entry.name);
        *first = Element(*variable, {first, count});
    }
    return false;
}

void Machine::CallHostMember(Value* first, std::size_t count, std::size_t symbol, CallKind kind) {
    const Ref<Object> host = program_.symbols[symbol].host;
    const int member = program_.symbols[symbol].member;
    Value result = InvokeObject(*host, member, kind, {first, count});
    for (std::size_t i = 1; i < count; ++i) first[i] = Value();
    *first = kind == CallKind::Get ? std::move(result) : Value();
}

/// A variable as a statement: what it holds must be an object that can be called.
void Machine::CallValue(Value* first, std::size_t count, Value& callee) {
    if (!callee.Is(VarType::Object)) Fail(ErrorCode::TypeMismatch);
    const Value held = callee;
    InvokeObject(ObjectOf(held), Object::DefaultMember, CallKind::Call, {first, count});
    for (std::size_t i = 0; i < count; ++i) first[i] = Value();
}

void Machine::RefName(Value& target, std::size_t symbol, std::size_t standIn) {
    const SymbolKind kind = program_.symbols[symbol].kind;
    if (kind == SymbolKind::Unknown && Top().routine->explicitNames) {
        target = Value::ReferenceTo(DeclaredByText(program_.symbols[symbol].name));
    } else if (kind == SymbolKind::Unknown) {
        if (standIn == 0) program_.symbols[symbol].kind = SymbolKind::Variable;
        target = Value::ReferenceTo(standIn > 0 ? Top().base[standIn - 1].Resolved() : stack_.get()[symbol]);
    } else if (kind == SymbolKind::Variable) {
        target = Value::ReferenceTo(stack_.get()[symbol]);
    } else if (kind == SymbolKind::Routine) {
        target = CallNested(*program_.symbols[symbol].routine, {}, nullptr);
    } else {
        CallName(&target, 0, symbol, standIn, NameUse::Value);
    }
}

void Machine::AssignName(std::size_t symbol, Value& value, CallKind kind) {
    const Symbol entry = program_.symbols[symbol];
    if (entry.kind == SymbolKind::HostMember) {
        InvokeObject(*entry.host, entry.member, kind, {&value, 1});
        return;
    }
    const bool isUnknown = entry.kind == SymbolKind::Unknown;
    if (!isUnknown && entry.kind != SymbolKind::Variable) FailNamed(ErrorCode::IllegalAssignment, entry.name);
    Value& target = isUnknown ? DeclaredByText(entry.name) : stack_.get()[symbol];
    kind == CallKind::Set ? SetValue(target, value, false) : LetValue(target, value, false);
}

// Texts as code

Value Machine::CallSpecial(SpecialCall which, std::span<Value> arguments) {
    switch (which) {
        case SpecialCall::Eval: {
            if (!arguments[0].Is(VarType::String)) return arguments[0];
            return RunText(arguments[0].AsString(), true, false);
        }
        case SpecialCall::Execute:
            return RunText(ToText(context_, arguments[0]), false, false);
        case SpecialCall::ExecuteGlobal:
            return RunText(ToText(context_, arguments[0]), false, true);
        case SpecialCall::GetRef: {
            const String name = ToText(context_, arguments[0]);
            const NameId id = program_.names.Find(name.View());
            const int number = id == NoName ? -1 : program_.symbols.Find(id);
            const Routine* const routine =
                number < 0 ? nullptr : program_.symbols[static_cast<std::size_t>(number)].routine;
            if (!routine) Fail(ErrorCode::InvalidCall);
            return Value::OfObject(Make<RoutineReference>(*this, *routine));
        }
        case SpecialCall::Randomize:
            Randomize(context_, arguments.empty() ? nullptr : &arguments[0]);
            break;
    }
    return Value();
}

/// Execute and Eval see the names of the routine that calls them; ExecuteGlobal does not.
Value Machine::RunText(const String& text, bool isExpression, bool global) {
    Frame& frame = Top();
    const bool inProcedure = frame.routine->kind != syntax::RoutineKind::Main || frame.routine->executed;
    Compiler::Place place;
    if (!global && inProcedure) {
        if (!frame.routine->executed && !frame.executed) frame.executed = std::make_unique<ExecutedNames>();
        place.around = frame.routine;
        place.executed = frame.routine->executed ? frame.routine->executed : frame.executed.get();
    }
    std::unique_ptr<Routine> routine;
    try {
        Parser parser(text.View(), program_.names, CurrentYear(context_));
        const auto tree = isExpression ? parser.ParseExpressionText() : parser.ParseProgram();
        Compiler compiler(context_, program_, stack_.get());
        routine = isExpression ? compiler.CompileExpression(*tree, place) : compiler.Compile(*tree, place);
    } catch (const SyntaxError& error) {
        throw RuntimeError(error.number, error.description, std::u16string(CompilationSource));
    }
    ReleaseReplaced();
    routine->importsFrom = place.around ? frame.base : nullptr;
    routine->executed = place.executed;
    return CallNested(*routine, {}, global ? nullptr : frame.me);
}

}  // namespace tessaloom::vbscript
