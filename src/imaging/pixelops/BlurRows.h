#pragma once

#include <cstddef>
#include <cstdint>

/// The two halves of a blur: running sums down the columns, means along the row. As in MergeRows.h,
/// `reference` defines the results.
namespace tessaloom::pixelops {

namespace reference {

/// sums[i] += added[i] - removed[i]; `removed` may be null.
void SumRow(std::uint16_t* sums, const std::uint8_t* added, const std::uint8_t* removed, std::size_t count);

/// out[i] = [(sums[i - 3 * radius] + .. + sums[i + 3 * radius]) / area], every third of them, for the radii 1
/// .. 3; area = (2 * radius + 1)^2. The sums must be readable as far as that on both sides, and come to no
/// more than 255 * area.
void MeanRow(std::uint8_t* out, const std::uint16_t* sums, int radius, std::size_t count);

}  // namespace reference

void SumRow(std::uint16_t* sums, const std::uint8_t* added, const std::uint8_t* removed, std::size_t count);
void MeanRow(std::uint8_t* out, const std::uint16_t* sums, int radius, std::size_t count);

}  // namespace tessaloom::pixelops
