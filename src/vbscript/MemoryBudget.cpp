#include "vbscript/MemoryBudget.h"

#include "vbscript/Error.h"

namespace tessaloom::vbscript {

void MemoryBudget::Exceeded() { Fail(ErrorCode::OutOfMemory); }

}  // namespace tessaloom::vbscript
