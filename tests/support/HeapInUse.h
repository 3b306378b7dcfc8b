#pragma once

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
/// Of the sanitizer; GCC has no header for it.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#else
#include <malloc.h>
#endif

namespace tessaloom::testing {

/// Bytes that the process has taken from the heap and not given back.
inline std::size_t HeapInUse() {
#if defined(__SANITIZE_ADDRESS__)
    return __sanitizer_get_current_allocated_bytes();
#else
    const struct mallinfo2 heap = ::mallinfo2();
    return heap.uordblks + heap.hblkhd;
#endif
}

}  // namespace tessaloom::testing
