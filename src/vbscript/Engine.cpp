#include "vbscript/Engine.h"

#include "vbscript/Machine.h"

namespace tessaloom::vbscript {

Engine::Engine(Host& host) : machine_(std::make_unique<Machine>(host)) {}
Engine::~Engine() = default;

void Engine::SetLimits(const Limits& limits) { machine_->SetLimits(limits); }
bool Engine::Reset() { return machine_->Reset(); }
void Engine::AddObject(std::string_view name, Ref<Object> object, bool addMembers) {
    machine_->AddObject(name, std::move(object), addMembers);
}
std::optional<Fault> Engine::AddCode(std::string_view code) { return machine_->AddCode(code); }
std::optional<Fault> Engine::Check(std::string_view code) { return machine_->Check(code); }
std::vector<Procedure> Engine::Procedures() const { return machine_->Procedures(); }
std::optional<Fault> Engine::Run(std::string_view name, std::span<Value> arguments, Value* result) {
    return machine_->Run(name, arguments, result);
}
bool Engine::Running() const { return machine_->Running(); }
void Engine::Interrupt() { machine_->Interrupt(); }
Context& Engine::GetContext() { return machine_->GetContext(); }

}  // namespace tessaloom::vbscript
