#include <algorithm>

#include "imaging/pixelops/Arithmetic.h"
#include "imaging/pixelops/MergeRows.h"
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

}  // namespace

void LayRow(Laying laying, std::uint8_t* dest, const std::uint8_t* paint, const std::uint8_t* map,
            int opacity, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        dest[i] = static_cast<std::uint8_t>(
            Laid(laying, dest[i], paint[i], map ? By255(opacity * map[i]) : opacity));
}

void KeepRow(std::uint8_t* kept, const std::uint8_t* source, const ColourRange& range, std::size_t pixels) {
    for (std::size_t i = 0; i < pixels; ++i, source += 3, kept += 3) {
        bool within = true;
        for (int c = 0; c < 3; ++c) within &= source[c] >= range.low[c] && source[c] <= range.high[c];
        for (int c = 0; c < 3 && within; ++c) kept[c] = std::min(kept[c], range.kept);
    }
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

}  // namespace tessaloom::pixelops::reference
