#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "vbscript/Context.h"
#include "vbscript/Value.h"

namespace tessaloom::vbscript {

/// A built-in function. No argument is a reference; omitted ones between commas are `Value::Missing()`. The
/// arguments are the function's to use up. It trusts the caller to have checked their number (else 450).
struct Builtin {
    using Function = Value (*)(Context& context, std::span<Value> arguments);

    static constexpr std::uint8_t AnyCount = 255;

    std::u16string_view name;
    std::uint8_t minArguments;
    std::uint8_t maxArguments;  ///< AnyCount: without end.
    Function call;
};

/// All of them, except what needs the engine itself (Eval, Execute, ExecuteGlobal, GetRef).
std::span<const Builtin> Builtins();

/// The place in `Builtins()`, whatever the case of `name`; -1 for none.
int FindBuiltin(std::u16string_view name);

/// The value of a built-in constant (vbCrLf ...), whatever the case of `name`; null for none.
const Value* FindConstant(std::u16string_view name);

/// The statement Randomize; null: by the time of day.
void Randomize(Context& context, const Value* seed);

}  // namespace tessaloom::vbscript
