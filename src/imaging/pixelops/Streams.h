#pragma once

#include <cstddef>

#include "imaging/pixelops/Arithmetic.h"

/// Writing past the cache: memory is written without being read before, which a store into the cache would
/// do. Right for large bitmaps alone, of which nothing is read again soon.
namespace tessaloom::pixelops {

/// From this size on, in bytes, a bitmap that is written as a whole does not stay in the processor's own
/// cache until someone reads it.
constexpr std::ptrdiff_t StreamedBytes = 1 << 20;

/// Whether a bitmap is that large; of sizes that nobody has memory for, too.
constexpr bool IsStreamed(int width, int height) {
    return height > 0 && RowBytes(width) >= StreamedBytes / height;
}

/// Before it, other threads may not see what was streamed.
void FinishStreams();

}  // namespace tessaloom::pixelops
