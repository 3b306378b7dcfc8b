#include <cstring>

#include "imaging/pixelops/Arithmetic.h"
#include "imaging/pixelops/Tessaloom.h"

namespace {

using namespace tessaloom::pixelops;

/// [value * 255 / 31]: spreads 0 .. 31 over 0 .. 255.
std::uint8_t FromFiveBits(unsigned value) { return static_cast<std::uint8_t>((value * 255 + 15) / 31); }

}  // namespace

int DIB1624(uint8_t* FramePtr, int Width, int Height) {
    if (!FramePtr || Width < 1 || Height < 1) return 0;
    const std::ptrdiff_t sourceRowBytes = (std::ptrdiff_t{Width} * 2 + 3) & ~std::ptrdiff_t{3};
    // From the last pixel to the first: each result lies behind all sources that are still to be read.
    for (int y = Height - 1; y >= 0; --y) {
        const std::uint8_t* from = FramePtr + y * sourceRowBytes;
        std::uint8_t* to = RowAt(FramePtr, Width, y);
        for (std::ptrdiff_t x = Width - 1; x >= 0; --x) {
            const unsigned packed = from[x * 2] | static_cast<unsigned>(from[x * 2 + 1]) << 8;
            to[x * 3] = FromFiveBits(packed & 31);
            to[x * 3 + 1] = FromFiveBits(packed >> 5 & 31);
            to[x * 3 + 2] = FromFiveBits(packed >> 10 & 31);
        }
    }
    return 0;
}

int Diff(uint8_t* OutPtr, const uint8_t* CurrentPtr, const uint8_t* PreviousPtr, int Width, int Height,
         int Threshold) {
    if (!OutPtr || !CurrentPtr || !PreviousPtr || Width < 1 || Height < 1) return 0;
    for (int y = 0; y < Height; ++y) {
        const std::uint8_t *current = RowAt(CurrentPtr, Width, y), *previous = RowAt(PreviousPtr, Width, y);
        std::uint8_t* out = RowAt(OutPtr, Width, y);
        for (std::ptrdiff_t i = 0; i < Width * std::ptrdiff_t{3}; ++i) {
            const int difference = current[i] - previous[i];
            const bool counts = difference >= Threshold || difference <= -std::int64_t{Threshold};
            out[i] = static_cast<std::uint8_t>(ClampToByte(128 + (counts ? difference : 0)));
        }
    }
    return 0;
}

int DiffHistogram(const uint8_t* Ptr, int Width, int Height, int* Histogram) {
    if (!Histogram) return 0;
    std::fill_n(Histogram, 256, 0);
    if (!Ptr || Width < 1 || Height < 1) return 0;
    for (int y = 0; y < Height; ++y) {
        const std::uint8_t* row = RowAt(Ptr, Width, y);
        for (std::ptrdiff_t i = 0; i < Width * std::ptrdiff_t{3}; ++i) ++Histogram[row[i]];
    }
    return 0;
}
