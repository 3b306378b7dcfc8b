#include <algorithm>

#include "imaging/pixelops/Arithmetic.h"
#include "imaging/pixelops/BlurRows.h"
#include "imaging/pixelops/ColorRows.h"
#include "imaging/pixelops/DiffRows.h"
#include "imaging/pixelops/FrameRows.h"
#include "imaging/pixelops/MergeRows.h"
#include "imaging/pixelops/SampleRows.h"
#include "imaging/pixelops/ScaleRows.h"
#include "imaging/pixelops/ShadowRows.h"

namespace tessaloom::pixelops::reference {

namespace {

int Laid(Laying laying, int dest, int paint, int opacity) {
    switch (laying) {
        case Laying::KeepDenser:
            return std::max(dest, By255(paint * opacity));
        case Laying::Darken:
            return static_cast<int>((std::int64_t{dest} * (65025 - paint * opacity) + 32512) / 65025);
        default:
            return By255(dest * (255 - opacity) + paint * opacity);
    }
}

bool Within(const std::uint8_t* pixel, const ColourRange& range) {
    bool within = true;
    for (int c = 0; c < 3; ++c) within &= pixel[c] >= range.low[c] && pixel[c] <= range.high[c];
    return within;
}

int Lightness(const std::uint8_t* pixel) {
    return (29 * pixel[0] + 150 * pixel[1] + 77 * pixel[2] + 128) / 256;
}

/// The component number `i` of a result, in 256ths.
std::uint32_t Mixed(const std::uint16_t* row, const PixelMix& mix, std::size_t i) {
    const std::size_t x = i / 3;
    auto sum = static_cast<std::uint32_t>((mix.taps + 1) / 2);
    const std::uint16_t* at = row + mix.firsts[x] + i % 3;
    for (std::size_t tap = 0; tap < mix.taps; ++tap, at += 3)
        sum += std::uint32_t{*at} * mix.weights[(tap * mix.padded + x) * 4] >> 16;
    return sum;
}

}  // namespace

void LayRow(Laying laying, std::uint8_t* dest, const std::uint8_t* paint, const std::uint8_t* map,
            int opacity, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        dest[i] = static_cast<std::uint8_t>(
            Laid(laying, dest[i], paint[i], map ? By255(opacity * map[i]) : opacity));
}

void KeepRow(std::uint8_t* kept, const std::uint8_t* source, const ColourRange& range, std::size_t pixels) {
    for (std::size_t i = 0; i < pixels * 3; i += 3)
        for (std::size_t c = 0; Within(source + i, range) && c < 3; ++c)
            kept[i + c] = std::min(kept[i + c], range.kept);
}

void HideRow(std::uint8_t* dest, const std::uint8_t* source, const ColourRange& range, std::size_t pixels) {
    for (std::size_t i = 0; i < pixels * 3; i += 3)
        if (!Within(source + i, range)) std::copy_n(source + i, 3, dest + i);
}

void ScaleRow(std::uint8_t* kept, const std::uint8_t* map, int opacity, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        kept[i] = static_cast<std::uint8_t>(By255(By255(opacity * map[i]) * kept[i]));
}

void SoftenRow(std::uint8_t* dest, const FiveLines& lines, const Softness& softness, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        dest[i] = static_cast<std::uint8_t>((softness.centre * lines.centre[i] +
                                             softness.next * (lines.before1[i] + lines.after1[i]) +
                                             softness.outer * (lines.before2[i] + lines.after2[i]) + 8) /
                                            16);
}

void FillRow(std::uint8_t* dest, const std::uint8_t* pattern, std::size_t pixels, bool) {
    for (std::size_t i = 0; i < pixels * 3; i += FillBytes)
        std::copy_n(pattern, std::min(FillBytes, pixels * 3 - i), dest + i);
}

void DiffRow(std::uint8_t* out, const std::uint8_t* current, const std::uint8_t* previous, int threshold,
             std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const int difference = current[i] - previous[i];
        const bool counts = difference > threshold || difference < -threshold;
        out[i] = static_cast<std::uint8_t>(ClampToByte(128 + (counts ? difference : 0)));
    }
}

void DiffCountRow(std::uint8_t* out, const std::uint8_t* current, const std::uint8_t* previous, int threshold,
                  std::size_t count, bool, Counts& counts) {
    DiffRow(out, current, previous, threshold, count);
    counts.total += count;
    for (std::size_t i = 0; i < count; ++i) ++counts.parts[0][out[i]];
}

void ChangeRow(const std::uint8_t* current, const std::uint8_t* previous, ChangeLimits limits,
               std::size_t count, FrameChange& change) {
    for (std::size_t i = 0; i < count; ++i) {
        const int difference = ClampToByte(128 + current[i] - previous[i]);
        change.beyond += difference <= limits.darker || difference >= limits.lighter ? 1 : 0;
        change.lowest = std::min(change.lowest, difference);
        change.highest = std::max(change.highest, difference);
    }
}

void WidenRow(std::uint8_t* dest, const std::uint8_t* source, std::size_t pixels) {
    for (std::size_t i = pixels; i-- > 0;) {  // backwards: all that is yet to be read lies before
        const int packed = source[i * 2] | source[i * 2 + 1] << 8;
        for (std::size_t c = 0; c < 3; ++c)
            dest[i * 3 + c] = static_cast<std::uint8_t>(((packed >> (5 * c) & 31) * 255 + 15) / 31);
    }
}

void SumRow(std::uint16_t* sums, const std::uint8_t* added, const std::uint8_t* removed, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        sums[i] = static_cast<std::uint16_t>(sums[i] + added[i] - (removed ? removed[i] : 0));
}

void MeanRow(std::uint8_t* out, const std::uint16_t* sums, int radius, std::size_t count) {
    const int area = (2 * radius + 1) * (2 * radius + 1);
    const std::ptrdiff_t reach = 3 * std::ptrdiff_t{radius};
    for (std::size_t i = 0; i < count; ++i) {
        int sum = area / 2;
        for (std::ptrdiff_t at = -reach; at <= reach; at += 3)
            sum += sums[static_cast<std::ptrdiff_t>(i) + at];
        out[i] = static_cast<std::uint8_t>(sum / area);
    }
}

void SampleRow(std::uint8_t* dest, const Pixels& source, Position at, Position step, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, dest += 3, at.x += step.x, at.y += step.y) {
        const std::uint8_t* below = source.bits + (at.y >> 32) * source.rowBytes + (at.x >> 32) * 3;
        const std::uint8_t* above = below + source.rowBytes;
        const int right = static_cast<int>(at.x >> 24 & 0xFF), top = static_cast<int>(at.y >> 24 & 0xFF);
        for (int c = 0; c < 3; ++c) {
            const int lower = below[c] * (256 - right) + below[c + 3] * right;
            const int upper = above[c] * (256 - right) + above[c + 3] * right;
            dest[c] = static_cast<std::uint8_t>((lower * (256 - top) + upper * top + 32768) >> 16);
        }
    }
}

void MixRows(std::uint16_t* row, const RowMix& mix, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        unsigned sum = static_cast<unsigned>((mix.taps + 1) / 2);
        const std::uint8_t* at = mix.first + i;
        for (std::size_t tap = 0; tap < mix.taps; ++tap, at += mix.step)
            sum += *at * 256U * mix.weights[tap] >> 16;
        row[i] = static_cast<std::uint16_t>(sum);
    }
}

void SpreadPixels(std::uint16_t* dest, const std::uint16_t* row, const PixelMix& mix, std::size_t pixels) {
    for (std::size_t i = 0; i < pixels * 3; ++i) dest[i] = static_cast<std::uint16_t>(Mixed(row, mix, i));
}

void MixPixels(std::uint8_t* dest, const std::uint16_t* row, const PixelMix& mix, std::size_t pixels) {
    for (std::size_t i = 0; i < pixels * 3; ++i)
        dest[i] = static_cast<std::uint8_t>((Mixed(row, mix, i) + 128) >> 8);
}

void SpreadLine(std::uint16_t* dest, const std::uint8_t* row, const LineMix& mix, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint8_t* left = row + mix.begins[i / LineMix::Block] + (mix.places[i] >> 8);
        const std::uint32_t weight = mix.weights[i];
        dest[i] =
            static_cast<std::uint16_t>((left[0] << 8) - (left[0] * weight >> 8) + (left[3] * weight >> 8));
    }
}

void BlendRows(std::uint8_t* dest, const std::uint16_t* one, const std::uint16_t* other, std::uint16_t weight,
               std::size_t count) {
    const std::uint32_t part = weight;
    for (std::size_t i = 0; i < count; ++i)
        dest[i] =
            static_cast<std::uint8_t>((one[i] - (one[i] * part >> 16) + (other[i] * part >> 16) + 128) >> 8);
}

void InvertRow(std::uint8_t* row, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) row[i] = static_cast<std::uint8_t>(255 - row[i]);
}

void BrightenRow(std::uint8_t* row, int amount, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) row[i] = static_cast<std::uint8_t>(ClampToByte(row[i] + amount));
}

void MapRow(std::uint8_t* row, const std::uint8_t* table, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) row[i] = table[row[i]];
}

void MapPixels(std::uint8_t* row, const std::uint8_t* blue, const std::uint8_t* red, std::size_t pixels) {
    for (std::uint8_t* pixel = row; pixel < row + pixels * 3; pixel += 3) {
        pixel[0] = blue[pixel[0]];
        pixel[2] = red[pixel[2]];
    }
}

void GreyRow(std::uint8_t* row, std::size_t pixels) {
    for (std::uint8_t* pixel = row; pixel < row + pixels * 3; pixel += 3)
        std::fill_n(pixel, 3, static_cast<std::uint8_t>(Lightness(pixel)));
}

void SaturateRow(std::uint8_t* row, int fifths, std::size_t pixels) {
    for (std::uint8_t* pixel = row; pixel < row + pixels * 3; pixel += 3) {
        const int lightness = Lightness(pixel);
        for (int c = 0; c < 3; ++c) {
            const int fivefold = lightness * 5 + (pixel[c] - lightness) * fifths;
            pixel[c] = static_cast<std::uint8_t>(ClampToByte((fivefold + 2) / 5));
        }
    }
}

void SwapRow(std::uint8_t* row, std::size_t pixels) {
    for (std::uint8_t* pixel = row; pixel < row + pixels * 3; pixel += 3) std::swap(pixel[0], pixel[2]);
}

void SharpenRow(std::uint8_t* out, const std::uint8_t* here, const std::uint8_t* below,
                const std::uint8_t* above, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint8_t* at = here + i;
        const int fourfold = 8 * at[0] - at[-3] - at[3] - below[i] - above[i];
        out[i] = static_cast<std::uint8_t>(ClampToByte((fourfold + 2) >> 2));
    }
}

}  // namespace tessaloom::pixelops::reference
