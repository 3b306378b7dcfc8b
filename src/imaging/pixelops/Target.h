#pragma once

#include <cstddef>
#include <cstdint>

/// The merges for callers that draw onto a part of a bitmap. Everything else is as Tessaloom.h has it.
namespace tessaloom::pixelops {

/// A part of a bitmap that is drawn onto as if there were no more of it. `bits` is its bottom left pixel.
struct Target {
    std::uint8_t* bits;
    int width, height;
    std::ptrdiff_t rowBytes;  ///< From one row of the whole bitmap to the next.
    bool streamed = false;    ///< It is filled past the cache (Streams.h).
};

/// What is laid down: the arguments of `Merge`.
struct Laid {
    const std::uint8_t* source;
    int width, height;
    int opacityMode;
    int keyColour;
    int opacity;
    const std::uint8_t* map;
    const int* colourTable;
    int colourCount;
    int transparentEnabled;
};

/// `Merge`; x, y: of the source's bottom left pixel, from the target's.
void MergeOnto(const Target& target, const Laid& laid, int x, int y);

/// `MergeText`.
void MergeTextOnto(const Target& target, const Laid& laid, int x, int y, int textColour);

/// `Cls`.
void Fill(const Target& target, int colour);

}  // namespace tessaloom::pixelops
