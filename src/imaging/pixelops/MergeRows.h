#pragma once

#include <cstddef>
#include <cstdint>

/// What the merges do to a row of bytes or pixels. Rows may lie at any address; `map` may be null; only
/// `kept` and the destinations are written. Nothing allocates or throws.
///
/// The functions in `reference` define the results; those beside them come to exactly the same with the
/// vector instructions that the processor has.
namespace tessaloom::pixelops {

enum class Laying { KeepDenser = 0, Darken = 1, Blend = 2 };

/// A range of colours, and how much is kept of the pixels in it.
struct ColourRange {
    std::uint8_t low[3], high[3];  ///< Blue, green, red; an empty range (low above high) holds nothing.
    std::uint8_t kept;
};

namespace reference {

/// dest[i] = paint[i] laid down with the opacity o = [opacity * map[i] / 255], or `opacity` without a map:
///   KeepDenser  max(dest, [paint * o / 255])
///   Darken      [dest * (65025 - paint * o) / 65025]
///   Blend       [(dest * (255 - o) + paint * o) / 255]
/// opacity: 0 .. 255. `dest` may be `paint` or `map`, but not overlap them otherwise.
void LayRow(Laying laying, std::uint8_t* dest, const std::uint8_t* paint, const std::uint8_t* map,
            int opacity, std::size_t count);

/// Lowers the three components of `kept` to range.kept where the pixel of `source` lies within the range.
void KeepRow(std::uint8_t* kept, const std::uint8_t* source, const ColourRange& range, std::size_t pixels);

/// Copies the pixels of `source` that lie beside the range; range.kept does not matter.
void HideRow(std::uint8_t* dest, const std::uint8_t* source, const ColourRange& range, std::size_t pixels);

/// kept[i] = [[opacity * map[i] / 255] * kept[i] / 255]
void ScaleRow(std::uint8_t* kept, const std::uint8_t* map, int opacity, std::size_t count);

}  // namespace reference

void LayRow(Laying laying, std::uint8_t* dest, const std::uint8_t* paint, const std::uint8_t* map,
            int opacity, std::size_t count);
void KeepRow(std::uint8_t* kept, const std::uint8_t* source, const ColourRange& range, std::size_t pixels);
void HideRow(std::uint8_t* dest, const std::uint8_t* source, const ColourRange& range, std::size_t pixels);
void ScaleRow(std::uint8_t* kept, const std::uint8_t* map, int opacity, std::size_t count);

}  // namespace tessaloom::pixelops
