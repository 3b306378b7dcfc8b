#include "vbscript/Machine.h"

#include <algorithm>
#include <new>
#include <stdexcept>

#include "vbscript/Array.h"
#include "vbscript/Builtins.h"
#include "vbscript/Conversions.h"
#include "vbscript/Error.h"
#include "vbscript/Frames.h"
#include "vbscript/Operators.h"
#include "vbscript/Parser.h"

namespace tessaloom::vbscript {

namespace {

/// Values for the registers of all running routines, some 200 for each of 5000.
constexpr std::size_t StackValues = std::size_t{1} << 20;

/// How often machines may run within each other: each takes one or two kilobytes of machine stack.
constexpr int DeepestNesting = 500;

Value* AllocateStack() {
    // All zero is a row of Empty values; untouched pages take no memory.
    void* const memory = std::calloc(MostGlobals + StackValues, sizeof(Value));
    if (!memory) throw std::bad_alloc();
    return static_cast<Value*>(memory);
}

}  // namespace

/// While it lives, one more machine loop runs.
class Machine::NestedRun {
public:
    explicit NestedRun(Machine& machine) : machine_(machine) {
        if (machine_.nesting_ >= DeepestNesting) Fail(ErrorCode::OutOfStackSpace);
        ++machine_.nesting_;
    }
    ~NestedRun() { --machine_.nesting_; }
    NestedRun(const NestedRun&) = delete;
    NestedRun& operator=(const NestedRun&) = delete;

private:
    Machine& machine_;
};

Machine::Machine(Host& host)
    : context_(host),
      stack_(AllocateStack()),
      stackEnd_(stack_.get() + MostGlobals + StackValues),
      stackReached_(stack_.get() + MostGlobals),
      builtins_(Builtins().data()) {
    Reset();
}

Machine::~Machine() { Forget(); }

bool Machine::Reset() {
    if (Running()) return false;
    Forget();
    self_ = std::make_shared<Machine*>(this);
    program_ = Program();
    frameCount_ = static_cast<std::size_t>(std::clamp(limits_.callDepth, 1, 100000));
    frames_ = std::make_unique_for_overwrite<Frame[]>(frameCount_);
    err_ = Make<ErrObject>();
    AddObject("Err", err_, false);
    return true;
}

/// Ends all that the script has made. Throws nothing, however late it is: the time of the run that
/// Class_Terminate has is over then.
void Machine::Forget() {
    const TimeLimit::Run run(context_.limit, limits_.seconds);
    const auto clear = [&] {
        for (std::size_t i = 0; i < program_.symbols.Count(); ++i) stack_.get()[i].MakeEmpty();
        for (Value* value = stack_.get() + MostGlobals; value != stackReached_; ++value) value->MakeEmpty();
    };
    clear();  // Class_Terminate runs now, and may fill variables again
    instances_.AbandonAll();
    context_.holders.DropAll();
    clear();
    if (self_) *self_ = nullptr;
}

void Machine::AddObject(std::string_view name, Ref<Object> object, bool addMembers) {
    const NameId id = program_.names.Intern(Utf16Of(name));
    const auto number = static_cast<std::size_t>(program_.symbols.Of(id));
    if (number >= MostGlobals) return;
    program_.symbols[number].kind = SymbolKind::Constant;
    stack_.get()[number] = Value::OfObject(object);
    if (addMembers) program_.openObjects.push_back(std::move(object));
}

std::vector<Procedure> Machine::Procedures() const {
    std::vector<Procedure> list;
    for (const Routine& routine : program_.routines) {
        const int number = program_.symbols.Find(routine.name);
        if (number < 0 || program_.symbols[static_cast<std::size_t>(number)].routine != &routine) continue;
        list.push_back({Utf8Of(program_.names.Spelling(routine.name)), routine.parameters});
    }
    return list;
}

// From outside

Fault Machine::FaultOf(const RuntimeError& error) const {
    Fault fault{error.number, Utf8Of(error.source), Utf8Of(error.description), error.line, error.column};
    const std::u16string& subject = error.subject.empty() ? detail_ : error.subject;
    if (!subject.empty()) fault.description += ": '" + Utf8Of(subject) + "'";
    return fault;
}

/// Runs `body`; what it throws becomes the result.
template <typename Body>
std::optional<Fault> Machine::Guarded(Body&& body) {
    const bool outermost = !Running();
    std::optional<TimeLimit::Run> run;
    detail_.clear();
    try {
        if (outermost) {
            run.emplace(context_.limit, limits_.seconds);
            MemoryBudget::SetLimit(limits_.bytes);
        }
        body();
        TimeLimit::Poll();  // it may have run out within Class_Terminate, whose errors are nobody's
        return std::nullopt;
    } catch (const SyntaxError& error) {
        return Fault{error.number, Utf8Of(CompilationSource), Utf8Of(error.description), error.line,
                     error.column};
    } catch (const RuntimeError& error) {
        if (outermost) err_->Set(error);
        return FaultOf(error);
    } catch (const TimeUp& end) {
        return Fault{Engine::TimeIsUp, Utf8Of(RuntimeSource), "The script was stopped: its time is up",
                     end.line, end.column};
    } catch (const std::bad_alloc&) {
        return FaultOf(RuntimeError(ErrorCode::OutOfMemory));
    } catch (const std::length_error&) {
        return FaultOf(RuntimeError(ErrorCode::OutOfMemory));
    }
}

std::optional<Fault> Machine::AddCode(std::string_view code) {
    return Guarded([&] {
        const std::u16string text = Utf16Of(code);
        const auto tree = Parser(text, program_.names, CurrentYear(context_)).ParseProgram();
        const auto main = Compiler(context_, program_, stack_.get()).Compile(*tree, {nullptr, !Running()});
        ReleaseReplaced();
        CallNested(*main, {}, nullptr);
    });
}

std::optional<Fault> Machine::Check(std::string_view code) {
    return Guarded([&] {
        const std::u16string text = Utf16Of(code);
        Names names;
        Compiler::Check(*Parser(text, names, CurrentYear(context_)).ParseProgram());
    });
}

std::optional<Fault> Machine::Run(std::string_view name, std::span<Value> arguments, Value* result) {
    return Guarded([&] {
        const NameId id = program_.names.Find(Utf16Of(name));
        const int number = id == NoName ? -1 : program_.symbols.Find(id);
        const Routine* const routine =
            number < 0 ? nullptr : program_.symbols[static_cast<std::size_t>(number)].routine;
        if (!routine) Fail(ErrorCode::ProcedureNotDefined);
        Value returned = CallNested(*routine, arguments, nullptr);
        if (result) *result = std::move(returned);
    });
}

// Frames

Value* Machine::StackTop() {
    return depth_ == 0 ? stack_.get() + MostGlobals : Top().base + Top().routine->frameSize;
}

/// Arguments stay where they are; `ByRef` ones are passed as references, so that what the routine assigns is
/// found in `arguments`.
Value Machine::CallNested(const Routine& routine, std::span<Value> arguments, Instance* me) {
    const NestedRun run(*this);
    Value* const base = routine.onGlobals ? stack_.get() : StackTop();
    if (!routine.onGlobals && base + arguments.size() >= stackEnd_) Fail(ErrorCode::OutOfStackSpace);
    // Above the top lie only plain values that are left over.
    for (std::size_t i = 0; i < arguments.size(); ++i) base[i] = Value::ReferenceTo(arguments[i].Resolved());
    Value result;
    const std::size_t stop = depth_;
    Enter(routine, base, arguments.size(), &result, false, me);
    Dispatch(stop);
    return result;
}

/// What a call does besides when it is more than usual: the time may be up, the stack at an end.
void Machine::ReachFurther(const Value* end) {
    constexpr std::ptrdiff_t Step = 4096;
    TimeLimit::Poll();
    if (depth_ >= frameCount_ || end >= stackEnd_) Fail(ErrorCode::OutOfStackSpace);
    if (end >= stackReached_)
        stackReached_ += std::min(end - stackReached_ + Step, stackEnd_ - stackReached_);
}

/// The outermost statements keep their temporaries behind the globals; those of Execute see the locals of the
/// routine around.
void Machine::PrepareOutermost(const Routine& routine, Value* base) {
    if (routine.onGlobals) return;
    for (Value *local = base + routine.parameters, *const end = base + routine.locals; local != end; ++local)
        local->MakeEmpty();
    for (const Routine::Import& import : routine.imports)
        base[import.slot] = Value::ReferenceTo(
            import.executed ? *import.executed : routine.importsFrom[import.outer].Resolved());
}

void Machine::ClearFrame(Frame& frame) {
    Value* const first = frame.base + (frame.routine->onGlobals ? MostGlobals : 0);
    for (Value *slot = first, *const end = frame.base + frame.routine->frameSize; slot < end; ++slot)
        slot->MakeEmpty();
    frame.executed.reset();
}

/// Frees procedures and classes that others have replaced, once they neither run nor are held by an object.
void Machine::ReleaseReplaced() {
    const auto isRunning = [&](const auto& belongs) {
        return std::any_of(frames_.get(), frames_.get() + depth_,
                           [&](const Frame& frame) { return belongs(*frame.routine); });
    };
    program_.replaced.remove_if([&](const Routine& routine) {
        return routine.references == 0 && !isRunning([&](const Routine& one) { return &one == &routine; });
    });
    program_.replacedClasses.remove_if([&](const Ref<ClassInfo>& type) {
        return type->References() == 1 &&
               !isRunning([&](const Routine& one) { return one.owner == type.Get(); });
    });
}

/// The mark of the statement that it is at.
const Mark& Machine::MarkOf(const Frame& frame) {
    const auto place = static_cast<std::size_t>(frame.place - frame.routine->code.data());
    return frame.routine->MarkAt(place == 0 ? 0 : place - 1);
}

/// Ends routines down to the one that goes on after errors; false when there is none above `stop`.
bool Machine::Recover(RuntimeError& error, std::size_t stop) {
    while (depth_ > stop) {
        Frame& frame = Top();
        const Mark& mark = MarkOf(frame);
        if (error.line == 0) error.line = mark.at.line, error.column = mark.at.column;
        if (frame.resumesNext) {
            err_->Set(error);
            detail_.clear();
            for (Value *value = frame.base + mark.firstTemporary, *const end =
                                                                      frame.base + frame.routine->frameSize;
                 value < end; ++value)
                value->MakeEmpty();
            frame.place = frame.routine->code.data() + mark.resume;
            return true;
        }
        ClearFrame(frame);
        --depth_;
    }
    return false;
}

void Machine::Unwind(std::size_t stop) {
    while (depth_ > stop) {
        ClearFrame(Top());
        --depth_;
    }
}

void Machine::FailUndefined(NameId name) { FailNamed(ErrorCode::VariableUndefined, name); }

void Machine::FailNamed(ErrorCode code, NameId name) {
    if (name != NoName) detail_ = program_.names.Spelling(name);
    Fail(code);
}

// Loops

/// `parts`: start, limit and step. They are numbers from here on; the start stays in its place.
void Machine::PrepareFor(Value* kept, Value* parts) {
    for (int i = 0; i < 3; ++i) {
        Value scratch;
        Value number = PlainValue(context_, parts[i], scratch);
        switch (number.Type()) {
            case VarType::Null:
                Fail(ErrorCode::InvalidUseOfNull);
            case VarType::Empty:
                number = Value::OfInteger(0);
                break;
            case VarType::String:
                number = Value::OfDouble(ToDouble(context_, number));
                break;
            case VarType::Array:
            case VarType::Error:
                Fail(ErrorCode::TypeMismatch);
            default:
                break;
        }
        parts[i] = std::move(number);
    }
    kept[0] = std::move(parts[1]);
    kept[1] = std::move(parts[2]);
}

bool Machine::IsBeyond(const Value& counter, const Value* kept) {
    const Value& step = kept[1];
    const bool isDown = IsIntegerOrLong(step) ? step.Whole() < 0 : ToDouble(context_, step) < 0;
    return Holds(context_, isDown ? Comparison::Less : Comparison::Greater, counter, kept[0]);
}

namespace {

/// What For Each keeps: the elements of an array, which cannot change its bounds meanwhile, or a collection.
class Walk final : public Object {
public:
    explicit Walk(Array& array) : array_(std::in_place, array) {}
    explicit Walk(std::unique_ptr<Enumerator> enumerator) : enumerator_(std::move(enumerator)) {}

    bool Next(Value& item) {
        if (enumerator_) return enumerator_->Next(item);
        const std::span<const Value> elements = std::as_const(**array_).Elements();
        if (next_ >= elements.size()) return false;
        item = elements[next_++];
        return true;
    }

    std::u16string_view TypeName() const override { return u"Object"; }
    int Find(std::u16string_view) override { return UnknownMember; }
    Value Invoke(Context&, int, CallKind, std::span<Value>) override { Fail(ErrorCode::NoSuchMember); }

private:
    std::optional<Array::Lock> array_;
    std::unique_ptr<Enumerator> enumerator_;
    std::size_t next_ = 0;
};

}  // namespace

void Machine::PrepareForEach(Value& kept, Value& source) {
    if (source.Is(VarType::Array)) {
        if (source.AsArray()->Rank() == 0) Fail(ErrorCode::ForNotInitialized);
        kept = Value::OfObject(Make<Walk>(*source.AsArray()));
        return;
    }
    if (!source.Is(VarType::Object)) Fail(ErrorCode::NotACollection);
    if (source.IsNothing()) Fail(ErrorCode::ObjectNotSet);
    const Value held = source;
    auto enumerator = held.AsObject()->Enumerate(context_);
    if (!enumerator) Fail(ErrorCode::NotACollection);
    kept = Value::OfObject(Make<Walk>(std::move(enumerator)));
}

/// At the end the item is Empty and `kept` no object any more.
void Machine::NextItem(Value& kept, Value& item) {
    if (!kept.Is(VarType::Object)) Fail(ErrorCode::NotACollection);
    Value next;
    if (!static_cast<Walk*>(kept.AsObject())->Next(next)) kept = Value::OfBoolean(false);
    item = std::move(next);
}

}  // namespace tessaloom::vbscript
