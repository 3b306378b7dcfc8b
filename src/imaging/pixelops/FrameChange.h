#pragma once

#include <cstdint>

namespace tessaloom::pixelops {

/// What the components of two frames differ by; differences as `Diff` has them with threshold 0.
struct FrameChange {
    std::int64_t beyond = 0;  ///< How many are as dark as one limit, or as light as the other.
    int lowest = 255;         ///< Of all differences.
    int highest = 0;          ///< The same.
};

/// Differences that count as darker (0 .. 127, and below) and lighter (128 .. 255, and above).
struct ChangeLimits {
    int darker = 0;
    int lighter = 255;
};

/// Blurs `source` onto `blurred` as `Blur` does, and compares that with `previous`, a bitmap of the same
/// size. In one pass, since most of the time goes into reaching memory. The bitmaps must differ, and there
/// must be pixels.
FrameChange BlurAndCompare(const std::uint8_t* source, std::uint8_t* blurred, const std::uint8_t* previous,
                           int height, int width, int level, ChangeLimits limits);

}  // namespace tessaloom::pixelops
