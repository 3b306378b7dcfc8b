#include "imaging/pixelops/Arithmetic.h"
#include "imaging/pixelops/Coverage.h"
#include "imaging/pixelops/Tessaloom.h"

namespace {

using namespace tessaloom::pixelops;

enum Mode { KeepDenser = 0, Darken = 1, Uniform = 2, Mapped = 3 };

template <Mode mode>
int Laid(int dest, int source, int opacity) {
    if constexpr (mode == KeepDenser) return std::max(dest, By255(source * opacity));
    if constexpr (mode == Darken) return (dest * (65025 - source * opacity) + 32512) / 65025;
    return Blend(dest, source, opacity);
}

/// One row of a merge. `paint` steps by `paintStep` bytes a pixel: 3 along a source, 0 for one colour.
/// `source` is what key and table see, `map` the coverage; either may be null.
struct Row {
    std::uint8_t* dest;
    const std::uint8_t* paint;
    int paintStep;
    const std::uint8_t* source;
    const std::uint8_t* map;
    int width;
};

template <Mode mode>
void MergeRow(Row row, const Coverage& coverage) {
    for (int x = 0; x < row.width; ++x) {
        const int kept = row.source ? coverage.Kept(row.source) : 255;
        if (kept > 0) {
            for (int c = 0; c < 3; ++c) {
                const int opacity = coverage.Of(row.map ? row.map[c] : 255, kept);
                row.dest[c] = static_cast<std::uint8_t>(Laid<mode>(row.dest[c], row.paint[c], opacity));
            }
        }
        row.dest += 3;
        row.paint += row.paintStep;
        if (row.source) row.source += 3;
        if (row.map) row.map += 3;
    }
}

/// The same for a source of which all pixels are laid down: without looking at pixels as such, in a loop that
/// compilers turn into vector instructions.
template <Mode mode>
void MergeWholeRow(const Row& row, int opacity) {
    const int bytes = row.width * 3;
    if (row.map) {
        for (int i = 0; i < bytes; ++i)
            row.dest[i] =
                static_cast<std::uint8_t>(Laid<mode>(row.dest[i], row.paint[i], By255(opacity * row.map[i])));
    } else {
        for (int i = 0; i < bytes; ++i)
            row.dest[i] = static_cast<std::uint8_t>(Laid<mode>(row.dest[i], row.paint[i], opacity));
    }
}

template <Mode mode>
void MergeAnyRow(const Row& row, const Coverage& coverage) {
    if (!row.source && row.paintStep == 3)
        MergeWholeRow<mode>(row, coverage.opacity);
    else
        MergeRow<mode>(row, coverage);
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

/// What `Merge` and `MergeText` share; `colour` is the text's blue, green and red, or null.
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
    const std::uint8_t colour[3] = {static_cast<std::uint8_t>(Blue(TextColour)),
                                    static_cast<std::uint8_t>(Green(TextColour)),
                                    static_cast<std::uint8_t>(Red(TextColour))};
    MergeLayer(DestPtr, DestWidth, DestHeight, {SourcePtr, SourceWidth, SourceHeight, map, colour}, X, Y,
               OpacityMode, coverage);
    return 0;
}
