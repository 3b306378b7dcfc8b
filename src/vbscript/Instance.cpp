#include "vbscript/Instance.h"

#include "vbscript/Array.h"
#include "vbscript/Error.h"
#include "vbscript/Machine.h"

namespace tessaloom::vbscript {

Instance::Instance(Machine& machine, Ref<ClassInfo> type)
    : Object(type->Shape()), machine_(&machine), type_(std::move(type)), fields_(type_->fields.size()) {
    for (std::size_t i = 0; i < type_->fields.size(); ++i) {
        const ClassInfo::Field& field = type_->fields[i];
        if (field.isArray) fields_[i] = Value::OfArray(Array::OfBounds(field.bounds, !field.bounds.empty()));
    }
    machine.Living().Add(*this);
}

Instance::~Instance() {
    if (machine_) machine_->Living().Remove(*this);
}

int Instance::Find(std::u16string_view name) {
    if (!machine_) return UnknownMember;
    const int number = type_->Find(machine_->AllNames().Find(name));
    if (number < 0 || type_->members[static_cast<std::size_t>(number)].isPrivate) return UnknownMember;
    return number;
}

Value Instance::Invoke(Context&, int member, CallKind kind, std::span<Value> arguments) {
    if (!machine_) Fail(ErrorCode::ActionNotSupported);
    const Ref<Instance> alive(this);
    return machine_->InvokeMember(*this, member, kind, arguments);
}

void Instance::Abandon() {
    if (machine_) machine_->Living().Remove(*this);
    machine_ = nullptr;
}

void Instance::ClearFields() {
    for (Value& field : fields_) field = Value();
}

void Instance::Dispose() {
    if (machine_ && type_->terminate && !terminated_) {
        terminated_ = true;
        Retain();
        machine_->Terminate(*this);
        if (References() > 1) {  // its own script code has kept it
            Release();
            return;
        }
    }
    delete this;
}

void Instances::Add(Instance& instance) {
    instance.next_ = first_;
    if (first_) first_->previous_ = &instance;
    first_ = &instance;
}

void Instances::Remove(Instance& instance) {
    (instance.previous_ ? instance.previous_->next_ : first_) = instance.next_;
    if (instance.next_) instance.next_->previous_ = instance.previous_;
    instance.previous_ = instance.next_ = nullptr;
}

void Instances::AbandonAll() {
    std::vector<Ref<Instance>> all;
    while (first_) {
        all.emplace_back(first_);
        first_->Abandon();
    }
    for (const Ref<Instance>& instance : all) instance->ClearFields();
}

}  // namespace tessaloom::vbscript
