#include <cmath>

#include "vbscript/Array.h"
#include "vbscript/Builtins.h"
#include "vbscript/Frames.h"
#include "vbscript/Operators.h"

// Jumping from instruction to instruction needs addresses of labels, a common extension.
#pragma GCC diagnostic ignored "-Wpedantic"

namespace tessaloom::vbscript {

namespace {

inline bool BothWhole(const Value& a, const Value& b) { return IsIntegerOrLong(a) && IsIntegerOrLong(b); }

/// Integer, Long or Double: what most arithmetic is about.
inline bool IsCommonNumber(const Value& value) { return IsIntegerOrLong(value) || value.Is(VarType::Double); }
inline double RealOf(const Value& number) {
    return number.Is(VarType::Double) ? number.Real() : number.Whole();
}

/// Stores a whole result; `a` and `b` were the operands.
[[gnu::always_inline]] inline void StoreWhole(Value& target, std::int64_t whole, const Value& a,
                                              const Value& b) {
    if (a.Is(VarType::Long) || b.Is(VarType::Long)) {
        if (FitsLong(whole)) return target.SetLong(static_cast<std::int32_t>(whole));
    } else {
        if (FitsInteger(whole)) return target.SetInteger(static_cast<std::int32_t>(whole));
        if (FitsLong(whole)) return target.SetLong(static_cast<std::int32_t>(whole));
    }
    target.SetDouble(static_cast<double>(whole));
}

template <Comparison C>
inline bool Holds(Context& context, const Value& a, const Value& b) {
    const auto compare = [](auto x, auto y) {
        if constexpr (C == Comparison::Equal) return x == y;
        if constexpr (C == Comparison::NotEqual) return x != y;
        if constexpr (C == Comparison::Less) return x < y;
        if constexpr (C == Comparison::Greater) return x > y;
        if constexpr (C == Comparison::LessOrEqual) return x <= y;
        if constexpr (C == Comparison::GreaterOrEqual) return x >= y;
    };
    if (BothWhole(a, b)) return compare(a.Whole(), b.Whole());
    if (IsCommonNumber(a) && IsCommonNumber(b)) return compare(RealOf(a), RealOf(b));
    return vbscript::Holds(context, C, a, b);
}

template <Comparison C>
inline void StoreComparison(Context& context, Value& target, const Value& a, const Value& b) {
    if (IsCommonNumber(a) && IsCommonNumber(b))
        target.SetBoolean(Holds<C>(context, a, b));
    else
        target = Compare(context, C, a, b);
}

inline bool IsTrue(Context& context, const Value& value) {
    return value.Is(VarType::Boolean) ? value.Whole() != 0 : ToCondition(context, value);
}

/// `target` = `a` `Join` `b`. A long text that is both operand and target grows in place, or a chain of many
/// parts would copy it for each of them.
template <Value (*Join)(Context&, const Value&, const Value&)>
inline void StoreJoined(Context& context, Value& target, const Value& a, const Value& b) {
    constexpr std::size_t LongBytes = 4096;
    const bool isLong = &target == &a && a.Is(VarType::String) && a.Text().size() > LongBytes;
    if (isLong && b.Is(VarType::String))
        AppendTo(context, target, b);
    else
        target = Join(context, a, b);
}

/// The object in `receiver`, if it is of the kind that `site` remembers.
inline Object* Known(const Value& receiver, const Site& site) {
    if (!receiver.HasObject()) return nullptr;
    Object& object = receiver.TheObject();
    return object.Shape() == site.shape ? &object : nullptr;
}

inline bool IsPlain(const Value& value) {
    return !value.Is(VarType::Object) && !value.Is(VarType::Reference);
}

}  // namespace

// A jump to the next instruction leaves a block without destructing what lies in it, so no block that ends in
// one may hold anything but plain data and references.

/// Runs until only `stop` routines are left. Errors that no handler of theirs takes go out as RuntimeError.
void Machine::Dispatch(std::size_t stop) {
    static const void* const labels[] = {
#define X(name) &&Do##name,
        TESSALOOM_OPCODES(X)
#undef X
    };

    const Instruction* pc = nullptr;
    const Instruction* i = nullptr;
    Value* base = nullptr;
    const Value* constants = nullptr;
    const Instruction* code = nullptr;
    Site* sites = nullptr;

#define NEXT()                                   \
    do {                                         \
        i = pc++;                                \
        goto* labels[static_cast<int>(i->code)]; \
    } while (false)
#define LOAD_FRAME()                                \
    do {                                            \
        const Frame& next = Top();                  \
        pc = next.place;                            \
        base = next.base;                           \
        constants = next.routine->constants.data(); \
        code = next.routine->code.data();           \
        sites = next.routine->sites.data();         \
    } while (false)
#define A base[i->a]
#define B base[i->b]
#define C base[i->c]
#define KC constants[i->c]

    for (;;) {
        std::optional<RuntimeError> error;
        try {
            LOAD_FRAME();
            NEXT();

#define ARITHMETIC(name, right, sign, slowly)                            \
    {                                                                    \
        const Value &x = B, &y = right;                                  \
        if (BothWhole(x, y)) {                                           \
            StoreWhole(A, std::int64_t{x.Whole()} sign y.Whole(), x, y); \
        } else if (IsCommonNumber(x) && IsCommonNumber(y)) {             \
            const double result = RealOf(x) sign RealOf(y);              \
            if (!std::isfinite(result)) [[unlikely]]                     \
                Fail(ErrorCode::Overflow);                               \
            A.SetDouble(result);                                         \
        } else {                                                         \
            slowly;                                                      \
        }                                                                \
        NEXT();                                                          \
    }
        DoAdd:
            ARITHMETIC(Add, C, +, StoreJoined<slow::Add>(context_, A, x, y))
        DoAddK:
            ARITHMETIC(Add, KC, +, StoreJoined<slow::Add>(context_, A, x, y))
        DoSubtract:
            ARITHMETIC(Subtract, C, -, A = slow::Subtract(context_, x, y))
        DoSubtractK:
            ARITHMETIC(Subtract, KC, -, A = slow::Subtract(context_, x, y))
        DoMultiply:
            ARITHMETIC(Multiply, C, *, A = slow::Multiply(context_, x, y))
        DoMultiplyK:
            ARITHMETIC(Multiply, KC, *, A = slow::Multiply(context_, x, y))
#undef ARITHMETIC

#define OPERATOR(name, function)                 \
    Do##name : A = function(context_, B, C);     \
    NEXT();                                      \
    Do##name##K : A = function(context_, B, KC); \
    NEXT();
            OPERATOR(Divide, Divide)
            OPERATOR(IntegerDivide, IntegerDivide)
            OPERATOR(Modulo, Modulo)
            OPERATOR(Power, Power)
            OPERATOR(And, vbscript::And)
            OPERATOR(Or, vbscript::Or)
            OPERATOR(Xor, vbscript::Xor)
            OPERATOR(Eqv, vbscript::Eqv)
            OPERATOR(Imp, vbscript::Imp)
#undef OPERATOR
        DoConcatenate:
            StoreJoined<Concatenate>(context_, A, B, C);
            NEXT();
        DoConcatenateK:
            StoreJoined<Concatenate>(context_, A, B, KC);
            NEXT();
        DoIs:
            A = Value::OfBoolean(IsSame(B, C));
            NEXT();
        DoIsK:
            A = Value::OfBoolean(IsSame(B, KC));
            NEXT();
        DoNegate:
            A = Negate(context_, B);
            NEXT();
        DoNot:
            if (B.Is(VarType::Boolean))
                A.SetBoolean(B.Whole() == 0);
            else
                A = vbscript::Not(context_, B);
            NEXT();

#define COMPARISON(name)                                                                 \
    Do##name : StoreComparison<Comparison::name>(context_, A, B, C);                     \
    NEXT();                                                                              \
    Do##name##K : StoreComparison<Comparison::name>(context_, A, B, KC);                 \
    NEXT();                                                                              \
    DoUnless##name : if (Holds<Comparison::name>(context_, A, B))++ pc;                  \
    else pc = code + pc->D();                                                            \
    NEXT();                                                                              \
    DoUnless##name##K : if (Holds<Comparison::name>(context_, A, constants[i->b]))++ pc; \
    else pc = code + pc->D();                                                            \
    NEXT();
            COMPARISON(Equal)
            COMPARISON(NotEqual)
            COMPARISON(Less)
            COMPARISON(Greater)
            COMPARISON(LessOrEqual)
            COMPARISON(GreaterOrEqual)
#undef COMPARISON
        DoCaseEqual:
            if (Holds<Comparison::Equal>(context_, A, B))
                pc = code + pc->D();
            else
                ++pc;
            NEXT();

        DoAppend:
            AppendTo(context_, A.Resolved(), B);
            NEXT();
        DoAppendMany:
            AppendTo(context_, A.Resolved(), {&B, i->c});
            NEXT();

        DoLoadConstant:
            A = constants[i->D()];
            NEXT();
        DoCopy:
            A = B;
            NEXT();
        DoLoadParameter:
            A = B.Resolved();
            NEXT();
        DoLoadGlobal:
            A = stack_.get()[i->b];
            NEXT();
        DoLoadField:
            A = Top().me->Field(i->b);
            NEXT();
        DoLoadMe:
            A = Value::OfObject(Top().me);
            NEXT();

#define STORE(name, function)                                        \
    Do##name : function(A, B, i->c != 0);                            \
    NEXT();                                                          \
    Do##name##Parameter : function(A.Resolved(), B, i->c != 0);      \
    NEXT();                                                          \
    Do##name##Global : function(stack_.get()[i->a], B, i->c != 0);   \
    NEXT();                                                          \
    Do##name##Field : function(Top().me->Field(i->a), B, i->c != 0); \
    NEXT();
            STORE(Let, LetValue)
            STORE(Set, SetValue)
#undef STORE
#define PUT(name, target)                       \
    Do##name : if (i->c) target = std::move(B); \
    else target = B;                            \
    NEXT();
            PUT(Put, A)
            PUT(PutParameter, A.Resolved())
            PUT(PutGlobal, stack_.get()[i->a])
            PUT(PutField, Top().me->Field(i->a))
#undef PUT
        DoLetName:
            AssignName(i->b, A, CallKind::Let);
            NEXT();
        DoSetName:
            AssignName(i->b, A, CallKind::Set);
            NEXT();

        DoRefLocal:
            A = Value::ReferenceTo(B);
            NEXT();
        DoRefParameter:
            A = Value::ReferenceTo(B.Resolved());
            NEXT();
        DoRefGlobal:
            A = Value::ReferenceTo(stack_.get()[i->b]);
            NEXT();
        DoRefField:
            A = Value::ReferenceTo(Top().me->Field(i->b));
            NEXT();

        DoIndex : {
            Value &variable = B.Resolved(), &index = C;
            if (variable.Is(VarType::Array) && IsIntegerOrLong(index))
                A = variable.AsArray()->At(index.Whole());
            else {
                Value copy = index.Resolved();
                A = Element(variable, {&copy, 1});
            }
            NEXT();
        }
        DoIndexMany:
            A = Element(B.Resolved(), {&A, i->c});
            NEXT();
        DoLetIndex : {
            Value &variable = B.Resolved(), &index = C;
            if (variable.Is(VarType::Array) && IsIntegerOrLong(index) && !A.Is(VarType::Object)) {
                LetValue(variable.WritableArray().At(index.Whole()), A, false);
            } else {
                Value both[] = {index.Resolved(), A.Resolved()};
                StoreElement(variable, both, CallKind::Let);
            }
            NEXT();
        }
        DoLetIndexMany:
            StoreElement(B.Resolved(), {&A, i->c + std::size_t{1}}, CallKind::Let);
            NEXT();
        DoSetIndexMany:
            StoreElement(B.Resolved(), {&A, i->c + std::size_t{1}}, CallKind::Set);
            NEXT();
        DoRefElement : {
            Value& variable = B.Resolved();
            if (variable.Is(VarType::Array))
                A = Value::ReferenceTo(ElementPlace(variable, {&A, i->c}));
            else
                A = Element(variable, {&A, i->c});
            NEXT();
        }
        DoPlain:
            for (Value *value = &A, *const end = value + i->b; value != end; ++value)
                if (value->Is(VarType::Object)) MakePlain(*value);
            NEXT();
        DoWriteBack:
            WriteBack(B.Resolved(), {&A, i->c + std::size_t{1}});
            NEXT();

        DoJump:
            pc = code + i->D();
            NEXT();
        DoLoopBack:
            TimeLimit::Poll();
            pc = code + i->D();
            NEXT();
        DoJumpIfFalse:
            if (!IsTrue(context_, A)) pc = code + i->D();
            NEXT();
        DoJumpIfTrue:
            if (IsTrue(context_, A)) pc = code + i->D();
            NEXT();

        DoForPrepare:
            PrepareFor(&A, &B);
            NEXT();
        DoForEnter:
            if (IsBeyond(B, &A))
                pc = code + pc->D();
            else
                ++pc;
            NEXT();
        DoForStep:
            if (A.Is(VarType::Empty)) Fail(ErrorCode::ForNotInitialized);
            B = Add(context_, B, (&A)[1]);
            NEXT();
        DoForBack:
            TimeLimit::Poll();
            if (IsBeyond(B, &A))
                ++pc;
            else
                pc = code + pc->D();
            NEXT();
        DoForNext : {
            TimeLimit::Poll();
            Value& counter = B;
            const Value *const kept = &A, &step = kept[1];
            if (BothWhole(counter, step) && IsIntegerOrLong(*kept)) {
                const std::int64_t next = std::int64_t{counter.Whole()} + step.Whole();
                StoreWhole(counter, next, counter, step);
                if (step.Whole() >= 0 ? next <= kept->Whole() : next >= kept->Whole())
                    pc = code + pc->D();
                else
                    ++pc;
                NEXT();
            }
            if (kept->Is(VarType::Empty)) Fail(ErrorCode::ForNotInitialized);
            counter = Add(context_, counter, step);
            if (IsBeyond(counter, kept))
                ++pc;
            else
                pc = code + pc->D();
            NEXT();
        }
        DoForEachPrepare:
            PrepareForEach(A, B.Resolved());
            NEXT();
        DoForEachNext:
            NextItem(A, B);
            NEXT();
        DoForEachBack:
            TimeLimit::Poll();
            if (A.Is(VarType::Object)) pc = code + i->D();
            NEXT();
        DoPrepareWith:
            if (!B.Is(VarType::Object)) Fail(ErrorCode::ObjectRequired);
            A = B;
            NEXT();

        DoCallRoutine : {
            Top().place = pc;
            const Routine* const routine = program_.symbols[i->b].routine;
            Enter(*routine, &A, i->c, &A, false, nullptr);
            LOAD_FRAME();
            NEXT();
        }
        DoCallOwn : {
            Frame& frame = Top();
            frame.place = pc;
            const Routine* const routine = frame.me->Type().members[i->b].get;
            if (!routine) Fail(ErrorCode::NoSuchMember);
            Enter(*routine, &A, i->c, &A, false, frame.me);
            LOAD_FRAME();
            NEXT();
        }
        DoCallBuiltin : {
            const std::size_t count = i->c;
            Value* const arguments = &A;
            Top().place = pc;
            TimeLimit::Poll();
            *arguments = builtins_[i->b].call(context_, {arguments, count});
            for (std::size_t k = 1; k < count; ++k) arguments[k].LetGo();
            NEXT();
        }
        DoLoadName : {
            Top().place = pc;
            if (CallName(&A, 0, i->b, i->c, NameUse::Value)) LOAD_FRAME();
            NEXT();
        }
        DoRefName:
            Top().place = pc;
            RefName(A, i->b, i->c);
            NEXT();
        DoCallName : {
            const Instruction& more = *pc++;
            Top().place = pc;
            if (CallName(&A, i->c, i->b, more.a, static_cast<NameUse>(more.b))) LOAD_FRAME();
            NEXT();
        }
        DoCallValue:
            Top().place = pc;
            CallValue(&A, i->c, B.Resolved());
            NEXT();
        DoGetItem : {
            const Value& argument = (&A)[1].Resolved();
            const Site& site = sites[pc->D()];
            Object* const object = Known(A, site);
            if (object && site.plain.item && !argument.Is(VarType::Object)) [[likely]] {
                A = site.plain.item(*object, context_, argument);
                (&A)[1].LetGo();
                pc += 1 + pc->a;
                NEXT();
            }
            goto DoCallMember;
        }
        DoCallMember : {
            const Instruction& more = *pc++;
            Site& site = sites[more.D()];
            Top().place = pc;
            const auto kind = static_cast<CallKind>(i->b & 0xFF);
            if (CallMember(&A, i->c, kind, (i->b & OwnAccess) != 0, site)) LOAD_FRAME();
            NEXT();
        }
        DoGetMember : {
            const Value& receiver = B.Resolved();
            Site& site = sites[i->c];
            if (Object* const object = Known(receiver, site); object && site.plain.get) [[likely]] {
                A = site.plain.get(*object, context_);
                NEXT();
            }
            Top().place = pc;
            A = Value(receiver);
            if (CallMember(&A, 0, CallKind::Get, false, site)) LOAD_FRAME();
            NEXT();
        }
        DoLetMember : {
            const Value &receiver = B.Resolved(), &value = (&A)[1];
            Site& site = sites[i->c];
            if (Object* const object = Known(receiver, site); object && site.plain.let && IsPlain(value))
                [[likely]] {
                site.plain.let(*object, context_, value);
                A.LetGo();
                (&A)[1].LetGo();
                NEXT();
            }
            Top().place = pc;
            A = Value(receiver);
            if (CallMember(&A, 1, CallKind::Let, false, site)) LOAD_FRAME();
            NEXT();
        }
        DoGetHostMember : {
            const Symbol& symbol = program_.symbols[i->b];
            if (symbol.plain.get) [[likely]] {
                A = symbol.plain.get(*symbol.host, context_);
                NEXT();
            }
            Top().place = pc;
            CallHostMember(&A, 0, i->b, CallKind::Get);
            NEXT();
        }
        DoCallHostMember : {
            const Instruction& more = *pc++;
            Top().place = pc;
            CallHostMember(&A, i->c, i->b, static_cast<CallKind>(more.b));
            NEXT();
        }
        DoCallSpecial:
            Top().place = pc;
            TimeLimit::Poll();
            A = CallSpecial(static_cast<SpecialCall>(i->b), {&A, i->c});
            NEXT();
        DoNew:
            Top().place = pc;
            A = NewObject(static_cast<NameId>(i->D()));
            NEXT();

        DoReturn:
            Leave();
            if (depth_ == stop) return;
            LOAD_FRAME();
            NEXT();
        DoRelease:
            for (Value *value = &A, *const end = value + i->b; value != end; ++value) value->MakeEmpty();
            NEXT();
        DoMakeArray : {
            const std::vector<int>& bounds = Top().routine->bounds[static_cast<std::size_t>(i->D())];
            A = Value::OfArray(Array::OfBounds(bounds, !bounds.empty()));
            NEXT();
        }
        DoReDim:
            ReDim(B.Resolved(), {&A, i->c}, (pc++)->b != 0);
            NEXT();
        DoErase:
            Erase(A.Resolved());
            NEXT();
        DoResumeNext:
            Top().resumesNext = true;
            err_->Clear();
            NEXT();
        DoErrorGoTo0:
            Top().resumesNext = false;
            err_->Clear();
            NEXT();
        DoRaise:
            Fail(static_cast<ErrorCode>(i->D()));
        } catch (RuntimeError& thrown) {
            error = std::move(thrown);
        } catch (const std::bad_alloc&) {
            error.emplace(ErrorCode::OutOfMemory);
        } catch (TimeUp& end) {
            if (depth_ > stop && end.line == 0) {
                Top().place = pc;
                const Position at = MarkOf(Top()).at;
                end = {at.line, at.column};
            }
            Unwind(stop);
            throw;
        } catch (...) {
            Unwind(stop);
            throw;
        }
        Top().place = pc;
        if (!Recover(*error, stop)) throw *error;
    }
#undef NEXT
#undef LOAD_FRAME
#undef A
#undef B
#undef C
#undef KC
}

}  // namespace tessaloom::vbscript
