#pragma once

#include <cstddef>
#include <cstdint>

/// The softening of shadows along rows. As in MergeRows.h, `reference` defines the result.
namespace tessaloom::pixelops {

/// The weights of a pixel, its two neighbours and theirs, in sixteenths; together they make 16.
struct Softness {
    int centre, next, outer;
};

/// Five lines of bytes, of which the third is softened: rows one above the other, or one row at five places.
struct FiveLines {
    const std::uint8_t *before2, *before1, *centre, *after1, *after2;
};

namespace reference {

/// dest[i] = [(centre * c + next * (b1 + a1) + outer * (b2 + a2)) / 16], ties upwards. `dest` overlaps none
/// of the lines.
void SoftenRow(std::uint8_t* dest, const FiveLines& lines, const Softness& softness, std::size_t count);

}  // namespace reference

void SoftenRow(std::uint8_t* dest, const FiveLines& lines, const Softness& softness, std::size_t count);

}  // namespace tessaloom::pixelops
