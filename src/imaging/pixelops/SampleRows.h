#pragma once

#include <cstddef>
#include <cstdint>

/// Pixels taken from between the pixels of a picture, along a line.
namespace tessaloom::pixelops {

/// In 1/2^32 pixels; pixel centres are whole. Sampling looks at the first 8 bits of the fraction.
struct Position {
    std::int64_t x, y;
};

/// The pixels of a picture, rows upwards.
struct Pixels {
    const std::uint8_t* bits;
    std::ptrdiff_t rowBytes;
};

namespace reference {

/// dest becomes `count` pixels at `at`, `at` + `step` and so on: the mean of the four neighbours, weighted by
/// the fractions in 256ths and rounded. A step is one pixel long at most, a row 2^26 bytes. Of the rows below
/// and above each position, 8 bytes must be readable from the pixel to its left on.
void SampleRow(std::uint8_t* dest, const Pixels& source, Position at, Position step, std::size_t count);

}  // namespace reference

/// May differ from its reference by 1.
void SampleRow(std::uint8_t* dest, const Pixels& source, Position at, Position step, std::size_t count);

}  // namespace tessaloom::pixelops
