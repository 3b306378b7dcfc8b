#include <cstring>

#include "imaging/pixelops/Arithmetic.h"
#include "imaging/pixelops/Coverage.h"
#include "imaging/pixelops/ShadowRows.h"
#include "imaging/pixelops/Tessaloom.h"

namespace {

using namespace tessaloom::pixelops;

/// For the sizes 1 .. 4.
constexpr Softness Sizes[] = {
    {12, 2, 0},
    {8,  4, 0},
    {6,  4, 1},
    {4,  3, 3}
};

/// Bytes of a row that are worked on at a time, in buffers on the stack: the bitmap is changed in place.
constexpr int PieceBytes = 768;

void SoftenAlong(std::uint8_t* row, int bytes, const Softness& softness) {
    constexpr int Reach = 6;  // two pixels
    std::uint8_t piece[Reach + PieceBytes + Reach] = {};
    for (int i = 0; i < bytes; i += PieceBytes) {
        const int count = std::min(PieceBytes, bytes - i);
        const int after = std::min(Reach, bytes - i - count);
        std::memset(piece + Reach, 0, PieceBytes + Reach);
        std::memcpy(piece + Reach, row + i, static_cast<std::size_t>(count + after));
        SoftenRow(row + i, {piece, piece + 3, piece + 6, piece + 9, piece + 12}, softness,
                  static_cast<std::size_t>(count));
        std::memcpy(piece, piece + PieceBytes, Reach);  // the last two pixels as they were
    }
}

/// The columns that `count` bytes from `top` on belong to.
void SoftenColumns(std::uint8_t* top, int count, int height, std::ptrdiff_t rowBytes,
                   const Softness& softness) {
    std::uint8_t lines[5][PieceBytes] = {};  // of rows y - 2 .. y + 2 as they were, row y in line y % 5
    const auto size = static_cast<std::size_t>(count);
    const auto line = [&](int y) { return lines[(y + 5) % 5]; };
    for (int y = 0; y < std::min(2, height); ++y) std::memcpy(line(y), top + y * rowBytes, size);
    for (int y = 0; y < height; ++y) {
        if (y + 2 < height)
            std::memcpy(line(y + 2), top + (y + 2) * rowBytes, size);
        else
            std::memset(line(y + 2), 0, size);
        SoftenRow(top + y * rowBytes, {line(y - 2), line(y - 1), line(y), line(y + 1), line(y + 2)}, softness,
                  size);
    }
}

/// The coverage of one row, alike in all three components. source, map: where its first pixel lies, or null;
/// without a source all of it is covered as far as the map says.
void TraceRow(std::uint8_t* shape, const std::uint8_t* source, const std::uint8_t* map, int width,
              const Coverage& coverage) {
    const std::ptrdiff_t bytes = width * std::ptrdiff_t{3};
    for (std::ptrdiff_t i = 0; i < bytes; i += PieceBytes) {
        const auto count = static_cast<std::size_t>(std::min<std::ptrdiff_t>(PieceBytes, bytes - i));
        std::uint8_t kept[PieceBytes];
        if (source)
            coverage.KeepRow(kept, source + i, count / 3);
        else
            std::memset(kept, 255, count);
        if (map) ScaleRow(kept, map + i, coverage.opacity, count);
        for (std::size_t c = 0; c < count && map; c += 3)
            if (kept[c] != kept[c + 1] || kept[c] != kept[c + 2])
                std::memset(kept + c, (kept[c] + kept[c + 1] + kept[c + 2] + 1) / 3, 3);
        // What is kept comes to [opacity * kept / 255].
        LayRow(Laying::KeepDenser, shape + i, kept, nullptr, map ? 255 : coverage.opacity, count);
    }
}

}  // namespace

int Shadow(uint8_t* ShadowPtr, int W, int H, const uint8_t* SourcePtr, int SourceWidth, int SourceHeight,
           int X, int Y, int OpacityMode, int KeyColour, int Opacity255, const uint8_t* OpacityMapPtr,
           int ShadowSize, int, int, const int* ColourTablePtr, int ColourCount, int TransparentEnabled) {
    if (!ShadowPtr || W < 1 || H < 1) return 0;
    Cls(ShadowPtr, W, H, 0);
    if (OpacityMode == 3 && !OpacityMapPtr) return 0;

    const Coverage coverage(KeyColour, Opacity255, ColourTablePtr, ColourCount, TransparentEnabled);
    const Overlap area = Clip(W, H, SourceWidth, SourceHeight, X, Y);
    const std::uint8_t* const source = coverage.Selective() ? SourcePtr : nullptr;
    for (int row = 0; row < area.height && area.width > 0; ++row) {
        const std::ptrdiff_t from =
            (area.sourceY + row) * RowBytes(SourceWidth) + area.sourceX * std::ptrdiff_t{3};
        TraceRow(RowAt(ShadowPtr, W, area.destY + row) + area.destX * std::ptrdiff_t{3},
                 source ? source + from : nullptr, OpacityMapPtr ? OpacityMapPtr + from : nullptr, area.width,
                 coverage);
    }

    const Softness& softness = Sizes[std::clamp(ShadowSize, 1, 4) - 1];
    const int bytes = W * 3;
    for (int y = 0; y < H; ++y) SoftenAlong(RowAt(ShadowPtr, W, y), bytes, softness);
    for (int i = 0; i < bytes; i += PieceBytes)
        SoftenColumns(ShadowPtr + i, std::min(PieceBytes, bytes - i), H, RowBytes(W), softness);
    return 0;
}
