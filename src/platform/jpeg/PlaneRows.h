#pragma once

#include <cstddef>
#include <cstdint>

namespace tessaloom {

/// Where two rows of a picture go: brightness in full, chroma halved in both directions.
struct PlaneRows {
    std::uint8_t *upperLuma, *lowerLuma;
    std::uint8_t *blueness, *redness;
};

/// Turns two rows of pixels (blue, green, red) into what JPEG files hold, to the bit as the encoder itself
/// would, at half its cost. The colours are those of JFIF, in 65536ths, rounded; chroma is the mean of four
/// pixels, halves rounded down and up by turns.
///
/// width: pixels, a multiple of 16. Both rows may be one. Nothing where `CanSplitRows` is false.
void SplitRows(const std::uint8_t* upper, const std::uint8_t* lower, std::size_t width, PlaneRows planes);

/// Whether this processor does it faster than the encoder.
bool CanSplitRows();

}  // namespace tessaloom
