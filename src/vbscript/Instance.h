#pragma once

#include "vbscript/ClassInfo.h"
#include "vbscript/MemoryBudget.h"
#include "vbscript/Object.h"

namespace tessaloom::vbscript {

class Machine;

/// An object of a class of the script. Outlives the machine harmlessly: its members are gone then.
class Instance final : public Object {
public:
    Instance(Machine& machine, Ref<ClassInfo> type);
    ~Instance() override;

    const ClassInfo& Type() const { return *type_; }
    Value& Field(std::size_t index) { return fields_[index]; }

    std::u16string_view TypeName() const override { return type_->name; }
    int Find(std::u16string_view name) override;
    Value Invoke(Context& context, int member, CallKind kind, std::span<Value> arguments) override;
    bool WritesArguments() const override { return true; }

    /// Takes it out of the machine's care; Class_Terminate does not run any more.
    void Abandon();

    /// Empties its fields, which ends circles of objects.
    void ClearFields();

private:
    void Dispose() override;

    friend class Instances;
    Machine* machine_;
    Ref<ClassInfo> type_;
    BudgetVector<Value> fields_;
    bool terminated_ = false;
    Instance* previous_ = nullptr;
    Instance* next_ = nullptr;
};

/// All living objects of a machine.
class Instances {
public:
    void Add(Instance& instance);
    void Remove(Instance& instance);

    /// Ends them, also those that only refer to each other.
    void AbandonAll();

private:
    Instance* first_ = nullptr;
};

}  // namespace tessaloom::vbscript
