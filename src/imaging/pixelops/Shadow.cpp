#include <cstring>

#include "imaging/pixelops/Arithmetic.h"
#include "imaging/pixelops/Coverage.h"
#include "imaging/pixelops/Tessaloom.h"

namespace {

using namespace tessaloom::pixelops;

/// The weights of a pixel, its neighbours and theirs, in sixteenths, for the sizes 1 .. 4.
struct Softness {
    int centre, next, outer;
};
constexpr Softness Sizes[] = {
    {12, 2, 0},
    {8,  4, 0},
    {6,  4, 1},
    {4,  3, 3}
};

/// Bytes of a row that are softened at a time, in buffers on the stack: the bitmap is changed in place.
constexpr int PieceBytes = 96;

/// The middle one of five lines of bytes, softened. dest: none of the lines.
TESSALOOM_VECTORS void Soften(const Softness& softness, const std::uint8_t* before2,
                              const std::uint8_t* before1, const std::uint8_t* centre,
                              const std::uint8_t* after1, const std::uint8_t* after2, std::uint8_t* dest,
                              int bytes) {
    const Softness s = softness;
    for (int i = 0; i < bytes; ++i)
        dest[i] = static_cast<std::uint8_t>(
            static_cast<std::uint16_t>(s.centre * centre[i] + s.next * (before1[i] + after1[i]) +
                                       s.outer * (before2[i] + after2[i]) + 8) /
            16);
}

void SoftenRow(std::uint8_t* row, int bytes, const Softness& softness) {
    constexpr int Reach = 6;  // two pixels
    std::uint8_t piece[Reach + PieceBytes + Reach] = {};
    for (int i = 0; i < bytes; i += PieceBytes) {
        const int count = std::min(PieceBytes, bytes - i);
        const int after = std::min(Reach, bytes - i - count);
        std::memset(piece + Reach, 0, PieceBytes + Reach);
        std::memcpy(piece + Reach, row + i, static_cast<std::size_t>(count + after));
        Soften(softness, piece, piece + 3, piece + 6, piece + 9, piece + 12, row + i, count);
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
        Soften(softness, line(y - 2), line(y - 1), line(y), line(y + 1), line(y + 2), top + y * rowBytes,
               count);
    }
}

/// The coverage of one row, alike in all three components. source, map: where its first pixel lies, or null;
/// without a source all of it is covered as far as the map says.
void TraceRow(std::uint8_t* shape, const std::uint8_t* source, const std::uint8_t* map, int width,
              const Coverage& coverage) {
    static constexpr std::uint8_t Full[3] = {255, 255, 255};
    for (std::ptrdiff_t i = 0; i < width * std::ptrdiff_t{3}; i += 3) {
        const std::uint8_t* const opacity = map ? map + i : Full;
        if ((opacity[0] | opacity[1] | opacity[2]) == 0) continue;
        const int kept = source ? coverage.Kept(source + i) : 255;
        int mean = coverage.Of(opacity[0], kept);
        if (opacity[0] != opacity[1] || opacity[0] != opacity[2])
            mean = (mean + coverage.Of(opacity[1], kept) + coverage.Of(opacity[2], kept) + 1) / 3;
        shape[i] = shape[i + 1] = shape[i + 2] = static_cast<std::uint8_t>(mean);
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
    for (int y = 0; y < H; ++y) SoftenRow(RowAt(ShadowPtr, W, y), bytes, softness);
    for (int i = 0; i < bytes; i += PieceBytes)
        SoftenColumns(ShadowPtr + i, std::min(PieceBytes, bytes - i), H, RowBytes(W), softness);
    return 0;
}
