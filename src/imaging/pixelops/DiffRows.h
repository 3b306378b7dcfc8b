#pragma once

#include <cstddef>
#include <cstdint>

#include "imaging/pixelops/FrameChange.h"

/// What is done to the rows of two frames that follow each other. As in MergeRows.h, `reference` defines the
/// results.
namespace tessaloom::pixelops {

/// How often each difference occurred. It is kept in parts, as a counter cannot be raised again before it has
/// reached the memory.
struct Counts {
    std::uint64_t total = 0;           ///< Of all bytes.
    std::uint32_t parts[8][256] = {};  ///< Says nothing about 128, which has what the others leave.

    std::uint32_t operator[](int value) const {
        return value == 128 ? static_cast<std::uint32_t>(total - Others()) : Sum(value);
    }

private:
    std::uint32_t Sum(int value) const {
        std::uint32_t sum = 0;
        for (const auto& part : parts) sum += part[value];
        return sum;
    }
    std::uint64_t Others() const {
        std::uint64_t sum = 0;
        for (int value = 0; value < 256; ++value) sum += value == 128 ? 0 : Sum(value);
        return sum;
    }
};

namespace reference {

/// out[i] = clamp(128 + current[i] - previous[i]) where they differ by more than `threshold` (0 .. 255), else
/// 128. `out` may be one of the other two.
void DiffRow(std::uint8_t* out, const std::uint8_t* current, const std::uint8_t* previous, int threshold,
             std::size_t count);

/// As `DiffRow`, and counts what it writes. `streamed`: `out` is written past the cache (Streams.h).
void DiffCountRow(std::uint8_t* out, const std::uint8_t* current, const std::uint8_t* previous, int threshold,
                  std::size_t count, bool streamed, Counts& counts);

/// Adds to `change` what the differences of a row, as `DiffRow` has them with threshold 0, come to.
void ChangeRow(const std::uint8_t* current, const std::uint8_t* previous, ChangeLimits limits,
               std::size_t count, FrameChange& change);

}  // namespace reference

void DiffRow(std::uint8_t* out, const std::uint8_t* current, const std::uint8_t* previous, int threshold,
             std::size_t count);
void DiffCountRow(std::uint8_t* out, const std::uint8_t* current, const std::uint8_t* previous, int threshold,
                  std::size_t count, bool streamed, Counts& counts);
void ChangeRow(const std::uint8_t* current, const std::uint8_t* previous, ChangeLimits limits,
               std::size_t count, FrameChange& change);

}  // namespace tessaloom::pixelops
