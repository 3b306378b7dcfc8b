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

/// The middle one of five values in a row or column, softened.
int Soften(const Softness& s, int before2, int before1, int centre, int after1, int after2) {
    return (s.centre * centre + s.next * (before1 + after1) + s.outer * (before2 + after2) + 8) / 16;
}

// The three components of the shadow bitmap serve as the three planes that the work needs, so that nothing is
// allocated: the shape goes into the first, softened along rows into the second, along columns into the
// third.
enum Plane { Shape = 0, Along = 1, Soft = 2 };

void SoftenRow(std::uint8_t* row, int width, const Softness& softness) {
    auto at = [&](int x) { return x < 0 || x >= width ? 0 : int{row[x * std::ptrdiff_t{3} + Shape]}; };
    for (int x = 0; x < width; ++x) {
        row[x * std::ptrdiff_t{3} + Along] =
            static_cast<std::uint8_t>(Soften(softness, at(x - 2), at(x - 1), at(x), at(x + 1), at(x + 2)));
    }
}

void SoftenColumns(std::uint8_t* bits, int width, int height, int y, const Softness& softness) {
    for (int x = 0; x < width; ++x) {
        auto at = [&](int row) {
            return row < 0 || row >= height ? 0 : int{RowAt(bits, width, row)[x * std::ptrdiff_t{3} + Along]};
        };
        RowAt(bits, width, y)[x * std::ptrdiff_t{3} + Soft] =
            static_cast<std::uint8_t>(Soften(softness, at(y - 2), at(y - 1), at(y), at(y + 1), at(y + 2)));
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
    for (int row = 0; row < area.height && area.width > 0; ++row) {
        const std::ptrdiff_t offset =
            (area.sourceY + row) * RowBytes(SourceWidth) + area.sourceX * std::ptrdiff_t{3};
        std::uint8_t* shape = RowAt(ShadowPtr, W, area.destY + row) + area.destX * std::ptrdiff_t{3} + Shape;
        for (std::ptrdiff_t i = 0; i < area.width * std::ptrdiff_t{3}; i += 3) {
            const int kept = SourcePtr && coverage.Selective() ? coverage.Kept(SourcePtr + offset + i) : 255;
            int sum = 0;
            for (int c = 0; c < 3; ++c)
                sum += coverage.Of(OpacityMapPtr ? OpacityMapPtr[offset + i + c] : 255, kept);
            shape[i] = static_cast<std::uint8_t>((sum + 1) / 3);
        }
    }

    const Softness& softness = Sizes[std::clamp(ShadowSize, 1, 4) - 1];
    for (int y = 0; y < H; ++y) SoftenRow(RowAt(ShadowPtr, W, y), W, softness);
    for (int y = 0; y < H; ++y) SoftenColumns(ShadowPtr, W, H, y, softness);
    for (int y = 0; y < H; ++y) {
        std::uint8_t* pixel = RowAt(ShadowPtr, W, y);
        for (int x = 0; x < W; ++x, pixel += 3) pixel[Shape] = pixel[Along] = pixel[Soft];
    }
    return 0;
}
