#pragma once

#include "vbscript/Builtins.h"

/// The built-in functions by theme; `Builtins()` is all of them.
namespace tessaloom::vbscript {

std::span<const Builtin> TextFunctions();
std::span<const Builtin> ByteFunctions();
std::span<const Builtin> SearchFunctions();
std::span<const Builtin> MathFunctions();
std::span<const Builtin> DateFunctions();
std::span<const Builtin> FormatFunctions();
std::span<const Builtin> TypeFunctions();
std::span<const Builtin> HostFunctions();

}  // namespace tessaloom::vbscript
