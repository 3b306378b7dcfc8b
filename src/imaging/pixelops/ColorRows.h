#pragma once

#include <cstddef>
#include <cstdint>

/// What `ColorProcess` does to rows. As in MergeRows.h, `reference` defines the results.
namespace tessaloom::pixelops {

namespace reference {

/// row[i] = 255 - row[i]
void InvertRow(std::uint8_t* row, std::size_t count);

/// row[i] = clamp(row[i] + amount). amount: -255 .. 255.
void BrightenRow(std::uint8_t* row, int amount, std::size_t count);

/// row[i] = table[row[i]]
void MapRow(std::uint8_t* row, const std::uint8_t* table, std::size_t count);

/// The same for blue and red; green stays.
void MapPixels(std::uint8_t* row, const std::uint8_t* blue, const std::uint8_t* red, std::size_t pixels);

/// Each component of a pixel becomes its lightness: [(29 * blue + 150 * green + 77 * red) / 256], the weights
/// of ITU-R BT.601.
void GreyRow(std::uint8_t* row, std::size_t pixels);

/// Each component's distance from the pixel's lightness becomes `fifths` / 5 of what it was: clamp([lightness
/// + (component - lightness) * fifths / 5]). fifths: 0 .. 10.
void SaturateRow(std::uint8_t* row, int fifths, std::size_t pixels);

/// Red and blue change places.
void SwapRow(std::uint8_t* row, std::size_t pixels);

/// out[i] = clamp([(8 * here[i] - here[i - 3] - here[i + 3] - below[i] - above[i]) / 4]). `here` must be
/// readable three bytes beyond both ends; `out` must be none of the others.
void SharpenRow(std::uint8_t* out, const std::uint8_t* here, const std::uint8_t* below,
                const std::uint8_t* above, std::size_t count);

}  // namespace reference

void InvertRow(std::uint8_t* row, std::size_t count);
void BrightenRow(std::uint8_t* row, int amount, std::size_t count);
void MapRow(std::uint8_t* row, const std::uint8_t* table, std::size_t count);
void MapPixels(std::uint8_t* row, const std::uint8_t* blue, const std::uint8_t* red, std::size_t pixels);
void GreyRow(std::uint8_t* row, std::size_t pixels);
void SaturateRow(std::uint8_t* row, int fifths, std::size_t pixels);
void SwapRow(std::uint8_t* row, std::size_t pixels);
void SharpenRow(std::uint8_t* out, const std::uint8_t* here, const std::uint8_t* below,
                const std::uint8_t* above, std::size_t count);

}  // namespace tessaloom::pixelops
