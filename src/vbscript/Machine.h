#pragma once

#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "vbscript/Compiler.h"
#include "vbscript/Engine.h"
#include "vbscript/ErrObject.h"
#include "vbscript/ExecutedNames.h"
#include "vbscript/Instance.h"

namespace tessaloom::vbscript {

struct Builtin;

/// Runs compiled routines.
///
/// One array of values, which never moves, holds the globals and behind them the registers of the running
/// routines, so that a reference may point into it. The arguments of a call are the last registers of the
/// caller and the first of the called. Procedures called by procedures take no machine stack; what comes
/// through an object of the host or a default member does, to a limited depth.
class Machine {
public:
    explicit Machine(Host& host);
    ~Machine();

    Context& GetContext() { return context_; }
    void SetLimits(const Limits& limits) { limits_ = limits; }
    bool Running() const { return depth_ > 0; }
    void Interrupt() { context_.limit.Interrupt(); }
    bool Reset();
    void AddObject(std::string_view name, Ref<Object> object, bool addMembers);
    std::optional<Fault> AddCode(std::string_view code);
    std::optional<Fault> Check(std::string_view code);
    std::vector<Procedure> Procedures() const;
    std::optional<Fault> Run(std::string_view name, std::span<Value> arguments, Value* result);

    /// @name For objects of the script
    /// @{
    Instances& Living() { return instances_; }
    const Names& AllNames() const { return program_.names; }

    /// Uses a member of an instance from outside of the machine.
    Value InvokeMember(Instance& instance, int member, CallKind kind, std::span<Value> arguments);

    /// Runs Class_Terminate; its errors are nobody's.
    void Terminate(Instance& instance);

    /// What to hold in order to know whether the machine and its routines are still there.
    std::shared_ptr<Machine*> Self() const { return self_; }

    Value CallNested(const Routine& routine, std::span<Value> arguments, Instance* me);
    /// @}

private:
    struct alignas(64) Frame {
        const Routine* routine;
        const Instruction* place;  ///< Where it goes on; of the running one, set when it calls out.
        Value* base;
        Value* result;
        Instance* me;
        bool dropsResult;
        bool resumesNext;
        std::unique_ptr<ExecutedNames> executed;  ///< Null until a text executed there declares names.
    };

    struct FreeMemory {
        void operator()(Value* values) const { std::free(values); }
    };

    class NestedRun;

    void Dispatch(std::size_t stop);
    void Enter(const Routine& routine, Value* base, std::size_t count, Value* result, bool drops,
               Instance* me);
    void PrepareOutermost(const Routine& routine, Value* base);
    void ReachFurther(const Value* end);
    void PassByValue(const Routine& routine, Value* base);
    void Leave();
    static void ClearFrame(Frame& frame);
    static const Mark& MarkOf(const Frame& frame);
    bool Recover(RuntimeError& error, std::size_t stop);
    void Unwind(std::size_t stop);
    void Forget();
    void ReleaseReplaced();
    Frame& Top() { return frames_[depth_ - 1]; }
    Value* StackTop();

    void MakePlain(Value& value);
    void LetValue(Value& target, Value& source, bool mayMove);
    void LetCompound(Value& target, Value& source, bool mayMove);
    void SetValue(Value& target, Value& source, bool mayMove);
    Value Element(Value& variable, std::span<Value> arguments, CallKind kind = CallKind::Get);
    Value& ElementPlace(Value& variable, std::span<const Value> indexes);
    void StoreElement(Value& variable, std::span<Value> arguments, CallKind kind);
    void WriteBack(Value& variable, std::span<Value> arguments);
    void ReDim(Value& variable, std::span<const Value> bounds, bool preserve);

    /// True when a routine was entered; else the result is in its place already.
    bool CallMember(Value* first, std::size_t count, CallKind kind, bool own, Site& site);
    bool UseMember(Instance& instance, int number, CallKind kind, bool own, Value* arguments,
                   std::size_t count, Value* result, bool nested);
    Value InvokeObject(Object& object, int member, CallKind kind, std::span<Value> arguments);
    Value InvokeWriting(Object& object, int member, CallKind kind, std::span<Value> arguments);
    bool CallName(Value* first, std::size_t count, std::size_t symbol, std::size_t standIn, NameUse use);
    void CallHostMember(Value* first, std::size_t count, std::size_t symbol, CallKind kind);
    void CallValue(Value* first, std::size_t count, Value& callee);
    void RefName(Value& target, std::size_t symbol, std::size_t standIn);
    void AssignName(std::size_t symbol, Value& value, CallKind kind);
    Value& DeclaredByText(NameId name);
    Value CallSpecial(SpecialCall which, std::span<Value> arguments);
    Value RunText(const String& text, bool isExpression, bool global);
    Value NewObject(NameId name);

    void PrepareFor(Value* kept, Value* parts);
    bool IsBeyond(const Value& counter, const Value* kept);
    void PrepareForEach(Value& kept, Value& source);
    void NextItem(Value& kept, Value& item);

    [[noreturn]] void FailUndefined(NameId name);
    [[noreturn]] void FailNamed(ErrorCode code, NameId name);
    Fault FaultOf(const RuntimeError& error) const;

    template <typename Body>
    std::optional<Fault> Guarded(Body&& body);

    Context context_;
    Program program_;
    Limits limits_;
    std::unique_ptr<Value, FreeMemory> stack_;
    Value* stackEnd_ = nullptr;
    Value* stackReached_ = nullptr;  ///< Behind it no routine has ever had a register.
    std::unique_ptr<Frame[]> frames_;
    std::size_t frameCount_ = 0;
    std::size_t depth_ = 0;
    int nesting_ = 0;
    const Builtin* builtins_;
    Instances instances_;
    Ref<ErrObject> err_;
    std::shared_ptr<Machine*> self_;  ///< Null inside once what was compiled is gone.
    std::u16string detail_;           ///< The name that the latest error is about.
};

}  // namespace tessaloom::vbscript
