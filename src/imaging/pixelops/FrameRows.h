#pragma once

#include <cstddef>
#include <cstdint>

/// What is done to rows of whole frames. As in MergeRows.h, `reference` defines the results.
namespace tessaloom::pixelops {

/// Three vectors of 64 bytes from any component on: whole pixels.
constexpr std::size_t FillBytes = 195;

namespace reference {

/// Copies `pattern` over and over: `FillBytes` bytes of equal pixels. `streamed`: past the cache
/// (Streams.h).
void FillRow(std::uint8_t* dest, const std::uint8_t* pattern, std::size_t pixels, bool streamed);

/// 16 bits a pixel (5 bits each of red, green, blue from bit 14 down, the lower byte first) become three
/// bytes, blue, green, red: [v * 255 / 31]. `dest` may begin anywhere but before `source`, and overlap it.
void WidenRow(std::uint8_t* dest, const std::uint8_t* source, std::size_t pixels);

}  // namespace reference

void FillRow(std::uint8_t* dest, const std::uint8_t* pattern, std::size_t pixels, bool streamed);
void WidenRow(std::uint8_t* dest, const std::uint8_t* source, std::size_t pixels);

}  // namespace tessaloom::pixelops
