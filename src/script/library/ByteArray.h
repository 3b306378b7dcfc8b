#pragma once

#include "vbscript/Context.h"
#include "vbscript/MemoryBudget.h"
#include "vbscript/Value.h"

namespace tessaloom::library {

/// The bytes of an array of Byte, or of other numbers; throws RuntimeError 13 for anything else.
vbscript::BudgetBytes BytesOf(vbscript::Context& context, const vbscript::Value& value);

}  // namespace tessaloom::library
