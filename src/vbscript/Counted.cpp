#include "vbscript/Counted.h"

#include <vector>

#include "vbscript/MemoryBudget.h"

namespace tessaloom::vbscript {

namespace {

constexpr int MaxNesting = 64;  ///< An end may run script code, which takes some kilobytes of stack.

thread_local int nesting = 0;
thread_local std::vector<Counted*> waiting;

}  // namespace

void* Counted::operator new(std::size_t bytes) { return MemoryBudget::Allocate(bytes); }

void Counted::operator delete(void* block, std::size_t bytes) { MemoryBudget::Free(block, bytes); }

void Counted::LastReleased() const {
    const auto self = const_cast<Counted*>(this);
    if (nesting == MaxNesting) {
        waiting.push_back(self);
        return;
    }
    ++nesting;
    self->Dispose();
    while (nesting == 1 && !waiting.empty()) {
        Counted* const next = waiting.back();
        waiting.pop_back();
        next->Dispose();
    }
    --nesting;
}

}  // namespace tessaloom::vbscript
