#pragma once

#include <cstddef>
#include <cstdint>

/// Copies past the cache: memory is written without being read before, which a store into the cache would do.
/// Right for large bitmaps alone, of which nothing is read again soon.
namespace tessaloom::pixelops {

/// From this size on, in bytes, a bitmap that is written as a whole does not stay in the processor's own
/// cache until someone reads it.
constexpr std::size_t StreamedBytes = 1 << 20;

namespace reference {

void StreamRow(std::uint8_t* dest, const std::uint8_t* source, std::size_t count);

}  // namespace reference

/// dest[i] = source[i]; they do not overlap. Other threads may read it after `FinishStreams`.
void StreamRow(std::uint8_t* dest, const std::uint8_t* source, std::size_t count);

void FinishStreams();

}  // namespace tessaloom::pixelops
