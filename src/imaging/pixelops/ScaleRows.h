#pragma once

#include <cstddef>
#include <cstdint>

/// The two halves of scaling: rows are mixed into one, then its pixels into those of the result. Weights are
/// in 65536ths, 65535 at most; between the halves components are in 256ths. As in MergeRows.h, `reference`
/// defines the results.
namespace tessaloom::pixelops {

/// `taps` rows, `step` bytes apart, and the weight of each. Together they weigh 65536 at most.
struct RowMix {
    const std::uint8_t* first;
    std::ptrdiff_t step;
    const std::uint16_t* weights;
    std::size_t taps;  ///< 64 at most.
};

/// Which neighbouring pixels of a row make up each pixel of the result. The arrays hold `padded` pixels: a
/// multiple of 4, no less than the result has.
struct PixelMix {
    const std::int32_t* firsts;    ///< Where the first pixel's components begin.
    const std::uint16_t* weights;  ///< Of tap t and pixel x, four times over from (t * padded + x) * 4 on.
    std::size_t padded;
    std::size_t taps;  ///< 64 at most.
};

/// Which two neighbours in a row lie to the left and to the right of each component of a row that is at least
/// as long. Each block of eight components is made of five neighbouring pixels, or fewer.
struct LineMix {
    static constexpr std::size_t Block = 8;
    static constexpr int Reach = 16;  ///< So many bytes are read for a block.

    const std::int32_t* begins;    ///< For each block, where these bytes begin in the row.
    const std::uint16_t* places;   ///< For each component, where among them the left neighbour is, 0 .. 12:
                                   ///< 256 * place + 128.
    const std::uint16_t* weights;  ///< Of each right neighbour. The left one weighs the rest.
};

namespace reference {

/// row[i] = the sum of the rows' floor(256 * byte * weight / 65536), and half a unit for each row, rounded
/// upwards, so that a weight of 65535 means all.
void MixRows(std::uint16_t* row, const RowMix& mix, std::size_t count);

/// A component of the result is the sum of floor(component * weight / 65536) and half a unit for each tap, as
/// above. After a pixel's last component, one more must be readable in `row`. `dest` has room for two more.
void SpreadPixels(std::uint16_t* dest, const std::uint16_t* row, const PixelMix& mix, std::size_t pixels);

/// As `SpreadPixels`, rounded to bytes.
void MixPixels(std::uint8_t* dest, const std::uint16_t* row, const PixelMix& mix, std::size_t pixels);

/// dest[i] = left * 256 - floor(left * weight / 256) + floor(right * weight / 256), which is in 256ths.
void SpreadLine(std::uint16_t* dest, const std::uint8_t* row, const LineMix& mix, std::size_t count);

/// dest[i] = the byte next to one - floor(one * weight / 65536) + floor(other * weight / 65536)
void BlendRows(std::uint8_t* dest, const std::uint16_t* one, const std::uint16_t* other, std::uint16_t weight,
               std::size_t count);

}  // namespace reference

void MixRows(std::uint16_t* row, const RowMix& mix, std::size_t count);
void SpreadPixels(std::uint16_t* dest, const std::uint16_t* row, const PixelMix& mix, std::size_t pixels);
void MixPixels(std::uint8_t* dest, const std::uint16_t* row, const PixelMix& mix, std::size_t pixels);
void SpreadLine(std::uint16_t* dest, const std::uint8_t* row, const LineMix& mix, std::size_t count);
void BlendRows(std::uint8_t* dest, const std::uint16_t* one, const std::uint16_t* other, std::uint16_t weight,
               std::size_t count);

}  // namespace tessaloom::pixelops
