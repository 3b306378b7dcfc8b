#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "vbscript/Fault.h"
#include "vbscript/Host.h"
#include "vbscript/MemoryBudget.h"
#include "vbscript/Object.h"
#include "vbscript/TimeLimit.h"
#include "vbscript/Value.h"

namespace tessaloom::vbscript {

struct Context;
class Machine;

/// The bounds within which a script runs.
struct Limits {
    double seconds = 0;    ///< For each `AddCode` and `Run`; 0: without end. Above it, error 18.
    int callDepth = 5000;  ///< Procedures within each other, 1 .. 100000; above it, error 28.
    std::size_t bytes = MemoryBudget::DefaultLimit;  ///< All that scripts make; above it, error 7.
};

/// One procedure at the outermost level.
struct Procedure {
    std::string name;
    int argumentCount = 0;
};

/// The script language: programs go in as text, procedures are called by name.
///
/// What several `AddCode` define adds up until `Reset`: variables, procedures and classes see each other. One
/// thread; a call back into the engine from a host object is served as a nested one, except that `Reset`
/// while anything runs is refused. Nothing is thrown: failures are returned as `Fault`.
class Engine {
public:
    /// The number of the error that ends a script whose time is up. No handler of the script sees it.
    static constexpr int TimeIsUp = TimeLimit::IsUp;

    /// `host` must outlive the engine.
    explicit Engine(Host& host);
    ~Engine();

    /// Take effect with the next `AddCode` or `Run`.
    void SetLimits(const Limits& limits);

    /// Forgets all code, variables and added objects; false (and nothing done) while a script runs.
    bool Reset();

    /// Makes `object` known as `name`; with `addMembers` its members are known without the name, too.
    void AddObject(std::string_view name, Ref<Object> object, bool addMembers = false);

    /// Compiles `code` (UTF-8) and runs its outermost statements.
    std::optional<Fault> AddCode(std::string_view code);

    /// Compiles `code` without running or keeping it.
    std::optional<Fault> Check(std::string_view code);

    /// The procedures at the outermost level, in the order of the code.
    std::vector<Procedure> Procedures() const;

    /// Runs a procedure. What it assigns to its parameters is found in `arguments` afterwards. `result`, when
    /// given, receives a function's value. An unknown name is error 35, a wrong count of arguments 450.
    std::optional<Fault> Run(std::string_view name, std::span<Value> arguments, Value* result = nullptr);

    /// Whether any code of this engine is under way.
    bool Running() const;

    /// Ends a running script as soon as it may be; what it was called by returns error `TimeIsUp`.
    void Interrupt();

    /// For host objects that call operators, conversions and members themselves.
    Context& GetContext();

private:
    std::unique_ptr<Machine> machine_;
};

}  // namespace tessaloom::vbscript
