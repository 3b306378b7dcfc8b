#include "vbscript/MemoryBudget.h"

#include "vbscript/Error.h"

namespace tessaloom::vbscript {

// Not inline: version 12 of the compiler takes what vectors do at their end for uses of freed blocks.
void MemoryBudget::Free(void* block, std::size_t bytes) noexcept {
    std::free(block);
    GiveBack(BlockBytes(bytes));
}

void MemoryBudget::Exceeded() { Fail(ErrorCode::OutOfMemory); }

}  // namespace tessaloom::vbscript
