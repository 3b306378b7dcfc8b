#pragma once

#include <cstddef>
#include <cstdint>

#include "imaging/pixelops/FrameChange.h"

/// What is done to rows of whole frames. As in MergeRows.h, `reference` defines the results.
namespace tessaloom::pixelops {

/// How often each value occurred. It is kept in parts, as a counter cannot be raised again before it has
/// reached the memory.
struct Counts {
    std::uint32_t none = 0;  ///< Of 128, beside what the parts say.
    std::uint32_t parts[4][256] = {};

    std::uint32_t operator[](int value) const {
        return parts[0][value] + parts[1][value] + parts[2][value] + parts[3][value] +
               (value == 128 ? none : 0);
    }
};

/// Three vectors of 64 bytes: whole pixels.
constexpr std::size_t FillBytes = 192;

namespace reference {

/// Copies `pattern` over and over: `FillBytes` bytes of equal pixels.
void FillRow(std::uint8_t* dest, const std::uint8_t* pattern, std::size_t pixels);

/// out[i] = clamp(128 + current[i] - previous[i]) where they differ by more than `threshold` (0 .. 255), else
/// 128. `out` may be one of the other two.
void DiffRow(std::uint8_t* out, const std::uint8_t* current, const std::uint8_t* previous, int threshold,
             std::size_t count);

/// As `DiffRow`, and counts what it writes.
void DiffCountRow(std::uint8_t* out, const std::uint8_t* current, const std::uint8_t* previous, int threshold,
                  std::size_t count, Counts& counts);

/// Adds to `change` what the differences of a row, as `DiffRow` has them with threshold 0, come to.
void ChangeRow(const std::uint8_t* current, const std::uint8_t* previous, ChangeLimits limits,
               std::size_t count, FrameChange& change);

/// 16 bits a pixel (5 bits each of red, green, blue from bit 14 down, the lower byte first) become three
/// bytes, blue, green, red: [v * 255 / 31]. `dest` may begin anywhere but before `source`, and overlap it.
void WidenRow(std::uint8_t* dest, const std::uint8_t* source, std::size_t pixels);

}  // namespace reference

void FillRow(std::uint8_t* dest, const std::uint8_t* pattern, std::size_t pixels);
void DiffRow(std::uint8_t* out, const std::uint8_t* current, const std::uint8_t* previous, int threshold,
             std::size_t count);
void DiffCountRow(std::uint8_t* out, const std::uint8_t* current, const std::uint8_t* previous, int threshold,
                  std::size_t count, Counts& counts);
void ChangeRow(const std::uint8_t* current, const std::uint8_t* previous, ChangeLimits limits,
               std::size_t count, FrameChange& change);
void WidenRow(std::uint8_t* dest, const std::uint8_t* source, std::size_t pixels);

}  // namespace tessaloom::pixelops
