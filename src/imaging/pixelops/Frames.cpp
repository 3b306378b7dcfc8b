#include "imaging/pixelops/Arithmetic.h"
#include "imaging/pixelops/DiffRows.h"
#include "imaging/pixelops/FrameRows.h"
#include "imaging/pixelops/Streams.h"
#include "imaging/pixelops/Tessaloom.h"

using namespace tessaloom::pixelops;

int DIB1624(uint8_t* FramePtr, int Width, int Height) {
    if (!FramePtr || Width < 1 || Height < 1) return 0;
    const std::ptrdiff_t sourceRowBytes = (std::ptrdiff_t{Width} * 2 + 3) & ~std::ptrdiff_t{3};
    // From the last row to the first: each result lies behind all sources that are still to be read.
    for (int y = Height - 1; y >= 0; --y)
        WidenRow(RowAt(FramePtr, Width, y), FramePtr + y * sourceRowBytes, static_cast<std::size_t>(Width));
    return 0;
}

int Diff(uint8_t* OutPtr, const uint8_t* CurrentPtr, const uint8_t* PreviousPtr, int Width, int Height,
         int Threshold) {
    if (!OutPtr || !CurrentPtr || !PreviousPtr || Width < 1 || Height < 1) return 0;
    const int threshold = std::clamp(Threshold, 0, 255);
    for (int y = 0; y < Height; ++y)
        DiffRow(RowAt(OutPtr, Width, y), RowAt(CurrentPtr, Width, y), RowAt(PreviousPtr, Width, y), threshold,
                static_cast<std::size_t>(Width) * 3);
    return 0;
}

int DiffHistogram(uint8_t* OutPtr, const uint8_t* CurrentPtr, const uint8_t* PreviousPtr, int Width,
                  int Height, int Threshold, int* Histogram) {
    if (!Histogram) return 0;
    Counts counts;
    if (OutPtr && CurrentPtr && PreviousPtr && Width > 0) {
        const int threshold = std::clamp(Threshold, 0, 255);
        const bool large = IsStreamed(Width, Height);
        for (int y = 0; y < Height; ++y)
            DiffCountRow(RowAt(OutPtr, Width, y), RowAt(CurrentPtr, Width, y), RowAt(PreviousPtr, Width, y),
                         threshold, static_cast<std::size_t>(Width) * 3, large, counts);
        if (large) FinishStreams();
    }
    for (int value = 0; value < 256; ++value) Histogram[value] = static_cast<int>(counts[value]);
    return 0;
}
