#include <cstring>

#include "imaging/pixelops/Arithmetic.h"
#include "imaging/pixelops/Coverage.h"
#include "imaging/pixelops/MergeRows.h"
#include "imaging/pixelops/Target.h"
#include "imaging/pixelops/Tessaloom.h"

using namespace tessaloom::pixelops;

namespace {

constexpr int Mapped = 3;

/// A piece of a row whose coverage or colour is held on the stack; whole pixels.
constexpr int PieceBytes = 1536;

Laying LayingOf(int opacityMode) {
    switch (opacityMode) {
        case 0:
            return Laying::KeepDenser;
        case 1:
            return Laying::Darken;
        default:
            return Laying::Blend;
    }
}

/// What `Merge` and `MergeText` share; `colour` is a piece of the text's colour, or null; with it there is a
/// map.
struct Layer {
    const std::uint8_t* source;
    int width, height;
    const std::uint8_t* map;
    const std::uint8_t* colour;
    Laying laying;
};

/// One row of a merge. `source` is what key and table see, null where they see nothing; `map` may be null.
struct Row {
    std::uint8_t* dest;
    const std::uint8_t* paint;
    const std::uint8_t* source;
    const std::uint8_t* map;
    int bytes;
};

void MergePiece(Laying laying, const Row& row, const Coverage& coverage) {
    const auto count = static_cast<std::size_t>(row.bytes);
    if (!row.source) return LayRow(laying, row.dest, row.paint, row.map, coverage.opacity, count);
    std::uint8_t kept[PieceBytes];
    coverage.KeepRow(kept, row.source, count / 3);
    if (row.map) ScaleRow(kept, row.map, coverage.opacity, count);
    LayRow(laying, row.dest, row.paint, kept, row.map ? 255 : coverage.opacity, count);
}

/// A row in pieces, or whole where nothing need be held on the stack.
void MergeRow(const Layer& layer, const Row& row, const Coverage& coverage) {
    const int longest = layer.colour || row.source ? PieceBytes : row.bytes;
    for (int i = 0; i < row.bytes; i += longest) {
        const auto at = [&](const std::uint8_t* bytes) { return bytes ? bytes + i : nullptr; };
        MergePiece(layer.laying,
                   {row.dest + i, layer.colour ? layer.colour : row.paint + i, at(row.source), at(row.map),
                    std::min(longest, row.bytes - i)},
                   coverage);
    }
}

void MergeLayer(const Target& target, const Layer& layer, int x, int y, const Coverage& coverage) {
    if (!target.bits || target.width < 1 || target.height < 1 || coverage.opacity == 0) return;
    const Overlap area = Clip(target.width, target.height, layer.width, layer.height, x, y);
    if (area.width < 1) return;
    const bool whole = layer.laying == Laying::Blend && coverage.opacity == 255 && !layer.map;
    const ColourRange* const hidden = whole ? coverage.OnlyHidden() : nullptr;
    const int bytes = area.width * 3;
    for (int row = 0; row < area.height; ++row) {
        const auto at = [&](const std::uint8_t* bits) {
            return bits ? RowAt(bits, layer.width, area.sourceY + row) + area.sourceX * std::ptrdiff_t{3}
                        : nullptr;
        };
        std::uint8_t* const to =
            target.bits + (area.destY + row) * target.rowBytes + area.destX * std::ptrdiff_t{3};
        const std::uint8_t* const source = at(layer.source);
        if (whole && !coverage.Selective())
            std::memmove(to, source, static_cast<std::size_t>(bytes));
        else if (hidden)
            HideRow(to, source, *hidden, static_cast<std::size_t>(area.width));
        else
            MergeRow(layer, {to, source, coverage.Selective() ? source : nullptr, at(layer.map), bytes},
                     coverage);
    }
}

}  // namespace

void tessaloom::pixelops::MergeOnto(const Target& target, const Laid& laid, int x, int y) {
    if (!laid.source || (laid.opacityMode == Mapped && !laid.map)) return;
    const Coverage coverage(laid.keyColour, laid.opacity, laid.colourTable, laid.colourCount,
                            laid.transparentEnabled);
    MergeLayer(target, {laid.source, laid.width, laid.height, laid.map, nullptr, LayingOf(laid.opacityMode)},
               x, y, coverage);
}

void tessaloom::pixelops::MergeTextOnto(const Target& target, const Laid& laid, int x, int y,
                                        int textColour) {
    const std::uint8_t* map = laid.map ? laid.map : laid.source;
    if (!map || (laid.opacityMode == Mapped && !laid.map)) return;
    const Coverage coverage(laid.keyColour, laid.opacity, laid.colourTable, laid.colourCount,
                            laid.transparentEnabled);
    std::uint8_t colour[PieceBytes];
    for (int i = 0; i < PieceBytes; i += 3) {
        colour[i] = static_cast<std::uint8_t>(Blue(textColour));
        colour[i + 1] = static_cast<std::uint8_t>(Green(textColour));
        colour[i + 2] = static_cast<std::uint8_t>(Red(textColour));
    }
    MergeLayer(target, {laid.source, laid.width, laid.height, map, colour, LayingOf(laid.opacityMode)}, x, y,
               coverage);
}

int Merge(uint8_t* DestPtr, int DestWidth, int DestHeight, const uint8_t* SourcePtr, int SourceWidth,
          int SourceHeight, int X, int Y, int OpacityMode, int KeyColour, int Opacity255,
          const uint8_t* OpacityMapPtr, int, int, const int* ColourTablePtr, int ColourCount,
          int TransparentEnabled) {
    MergeOnto({DestPtr, DestWidth, DestHeight, RowBytes(DestWidth)},
              {SourcePtr, SourceWidth, SourceHeight, OpacityMode, KeyColour, Opacity255, OpacityMapPtr,
               ColourTablePtr, ColourCount, TransparentEnabled},
              X, Y);
    return 0;
}

int MergeText(uint8_t* DestPtr, int DestWidth, int DestHeight, const uint8_t* SourcePtr, int SourceWidth,
              int SourceHeight, int X, int Y, int OpacityMode, int KeyColour, int Opacity255,
              const uint8_t* OpacityMapPtr, int, int, const int* ColourTablePtr, int ColourCount,
              int TransparentEnabled, int TextColour) {
    MergeTextOnto({DestPtr, DestWidth, DestHeight, RowBytes(DestWidth)},
                  {SourcePtr, SourceWidth, SourceHeight, OpacityMode, KeyColour, Opacity255, OpacityMapPtr,
                   ColourTablePtr, ColourCount, TransparentEnabled},
                  X, Y, TextColour);
    return 0;
}
