#include <cstring>

#include "imaging/pixelops/Arithmetic.h"
#include "imaging/pixelops/Coverage.h"
#include "imaging/pixelops/Tessaloom.h"

namespace {

using namespace tessaloom::pixelops;

enum Mode { KeepDenser = 0, Darken = 1, Uniform = 2, Mapped = 3 };

/// [dest * (65025 - density) / 65025] for density 0 .. 65025.
///
/// Vector instructions have no division, and 16 bits hold twice as many values as 32: the quotient is
/// estimated within 1 / 255, which makes it wrong by one at most; the remainder, of which 16 bits are enough
/// then, tells.
int Darkened(int dest, int density) {
    constexpr int Whole = 65025, Half = Whole / 2;
    const auto value = static_cast<std::uint16_t>(dest);
    const auto light = static_cast<std::uint16_t>(Whole - density);
    const auto stretched = static_cast<std::uint16_t>(value * 257);  // 255 becomes 65535
    const auto times255 = static_cast<std::uint16_t>(static_cast<std::uint32_t>(stretched) * light >> 16);
    const std::uint16_t quotient = By255(static_cast<std::uint16_t>(times255 + 1));
    // -Whole is 511 within 16 bits.
    const auto rest = static_cast<std::int16_t>(
        static_cast<std::uint16_t>(static_cast<std::uint16_t>(static_cast<std::uint32_t>(value) * light) +
                                   static_cast<std::uint16_t>(quotient * 511)));
    const auto missing = static_cast<std::int16_t>(rest > Half ? 1 : 0);
    const auto excess = static_cast<std::int16_t>(rest < -Half ? 1 : 0);
    return static_cast<std::uint8_t>(quotient + static_cast<std::int16_t>(missing - excess));
}

template <Mode mode>
int Laid(int dest, int source, int opacity) {
    if constexpr (mode == KeepDenser)
        return std::max<int>(dest, By255(static_cast<std::uint16_t>(source * opacity)));
    if constexpr (mode == Darken) return Darkened(dest, source * opacity);
    return Blend(dest, source, opacity);
}

/// A piece of a row: small enough to pass over where nothing is laid down, as in most of a text's box.
constexpr int PieceBytes = 96;

/// One row of a merge. `source` is what key and table see, `map` the coverage; either may be null. One colour
/// is given as a piece of it.
struct Row {
    std::uint8_t* dest;
    const std::uint8_t* paint;
    int paintStep;  ///< Bytes from one pixel's paint to the next: 3 along a source, 0 for one colour.
    const std::uint8_t* source;
    const std::uint8_t* map;
    int width;
};

template <Mode mode>
void MergePixels(Row row, const Coverage& coverage) {
    for (int x = 0; x < row.width; ++x) {
        const int kept = coverage.Kept(row.source);
        if (kept > 0) {
            for (int c = 0; c < 3; ++c) {
                const int opacity = coverage.Of(row.map ? row.map[c] : 255, kept);
                row.dest[c] = static_cast<std::uint8_t>(Laid<mode>(row.dest[c], row.paint[c], opacity));
            }
        }
        row.dest += 3;
        row.source += 3;
        row.paint += row.paintStep;
        if (row.map) row.map += 3;
    }
}

bool AllZero(const std::uint8_t* bytes, int count) {
    std::uint64_t found = 0;
    int i = 0;
    for (; i + 8 <= count; i += 8) {
        std::uint64_t eight;
        std::memcpy(&eight, bytes + i, sizeof eight);
        found |= eight;
    }
    for (; i < count; ++i) found |= bytes[i];
    return found == 0;
}

/// `bytes` components of which all are laid down. The loops are such that compilers turn them into vector
/// instructions.
template <Mode mode>
TESSALOOM_VECTORS void MergeBytes(std::uint8_t* dest, const std::uint8_t* paint, const std::uint8_t* map,
                                  int bytes, int opacity) {
    if (map) {
        for (int i = 0; i < bytes; ++i)
            dest[i] = static_cast<std::uint8_t>(
                Laid<mode>(dest[i], paint[i], By255(static_cast<std::uint16_t>(opacity * map[i]))));
    } else {
        for (int i = 0; i < bytes; ++i)
            dest[i] = static_cast<std::uint8_t>(Laid<mode>(dest[i], paint[i], opacity));
    }
}

template <Mode mode>
void MergeWholeRow(const Row& row, int opacity) {
    const int bytes = row.width * 3;
    if (opacity == 0) return;
    if (mode == Uniform && opacity == 255 && !row.map && row.paintStep == 3) {
        std::memmove(row.dest, row.paint, static_cast<std::size_t>(bytes));
        return;
    }
    // Without a map, only where there is no density is nothing laid down.
    const std::uint8_t* const ink = row.map ? row.map : mode != Uniform ? row.paint : nullptr;
    const auto nothing = [&](int i) { return ink && AllZero(ink + i, std::min(PieceBytes, bytes - i)); };
    const int longest = row.paintStep == 0 ? PieceBytes : bytes;
    for (int i = 0, end = 0; i < bytes; i = end) {
        end = i + PieceBytes;
        if (nothing(i)) continue;
        while (end < bytes && end - i < longest && !nothing(end)) end += PieceBytes;
        MergeBytes<mode>(row.dest + i, row.paintStep == 0 ? row.paint : row.paint + i,
                         row.map ? row.map + i : nullptr, std::min(end, bytes) - i, opacity);
    }
}

template <Mode mode>
void MergeAnyRow(const Row& row, const Coverage& coverage) {
    if (row.source)
        MergePixels<mode>(row, coverage);
    else
        MergeWholeRow<mode>(row, coverage.opacity);
}

void MergeRow(int mode, const Row& row, const Coverage& coverage) {
    switch (mode) {
        case KeepDenser:
            return MergeAnyRow<KeepDenser>(row, coverage);
        case Darken:
            return MergeAnyRow<Darken>(row, coverage);
        default:
            return MergeAnyRow<Uniform>(row, coverage);
    }
}

/// What `Merge` and `MergeText` share; `colour` is a piece of the text's colour, or null.
struct Layer {
    const std::uint8_t* source;
    int width, height;
    const std::uint8_t* map;
    const std::uint8_t* colour;
};

void MergeLayer(std::uint8_t* dest, int destWidth, int destHeight, const Layer& layer, int x, int y, int mode,
                const Coverage& coverage) {
    if (!dest || destWidth < 1 || destHeight < 1) return;
    const Overlap area = Clip(destWidth, destHeight, layer.width, layer.height, x, y);
    if (area.width < 1) return;
    for (int row = 0; row < area.height; ++row) {
        auto at = [&](const std::uint8_t* bits) {
            return bits ? RowAt(bits, layer.width, area.sourceY + row) + area.sourceX * std::ptrdiff_t{3}
                        : nullptr;
        };
        const std::uint8_t* source = at(layer.source);
        MergeRow(mode,
                 {RowAt(dest, destWidth, area.destY + row) + area.destX * std::ptrdiff_t{3},
                  layer.colour ? layer.colour : source, layer.colour ? 0 : 3,
                  coverage.Selective() ? source : nullptr, at(layer.map), area.width},
                 coverage);
    }
}

}  // namespace

int Merge(uint8_t* DestPtr, int DestWidth, int DestHeight, const uint8_t* SourcePtr, int SourceWidth,
          int SourceHeight, int X, int Y, int OpacityMode, int KeyColour, int Opacity255,
          const uint8_t* OpacityMapPtr, int, int, const int* ColourTablePtr, int ColourCount,
          int TransparentEnabled) {
    if (!SourcePtr || (OpacityMode == Mapped && !OpacityMapPtr)) return 0;
    const Coverage coverage(KeyColour, Opacity255, ColourTablePtr, ColourCount, TransparentEnabled);
    MergeLayer(DestPtr, DestWidth, DestHeight, {SourcePtr, SourceWidth, SourceHeight, OpacityMapPtr, nullptr},
               X, Y, OpacityMode, coverage);
    return 0;
}

int MergeText(uint8_t* DestPtr, int DestWidth, int DestHeight, const uint8_t* SourcePtr, int SourceWidth,
              int SourceHeight, int X, int Y, int OpacityMode, int KeyColour, int Opacity255,
              const uint8_t* OpacityMapPtr, int, int, const int* ColourTablePtr, int ColourCount,
              int TransparentEnabled, int TextColour) {
    const std::uint8_t* map = OpacityMapPtr ? OpacityMapPtr : SourcePtr;
    if (!map || (OpacityMode == Mapped && !OpacityMapPtr)) return 0;
    const Coverage coverage(KeyColour, Opacity255, ColourTablePtr, ColourCount, TransparentEnabled);
    std::uint8_t colour[PieceBytes];
    for (int i = 0; i < PieceBytes; i += 3) {
        colour[i] = static_cast<std::uint8_t>(Blue(TextColour));
        colour[i + 1] = static_cast<std::uint8_t>(Green(TextColour));
        colour[i + 2] = static_cast<std::uint8_t>(Red(TextColour));
    }
    MergeLayer(DestPtr, DestWidth, DestHeight, {SourcePtr, SourceWidth, SourceHeight, map, colour}, X, Y,
               OpacityMode, coverage);
    return 0;
}
