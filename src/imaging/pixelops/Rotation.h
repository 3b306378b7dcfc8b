#pragma once

namespace tessaloom {

/// Pixels.
struct PixelSize {
    int width = 0;
    int height = 0;

    bool operator==(const PixelSize&) const = default;
};

/// The size of the bitmap that holds `width` x `height` pixels rotated by `degrees`, whole to its corners.
/// Exact for quarter turns. Any angle; sizes beyond what an int holds stop there.
PixelSize RotatedSize(int width, int height, double degrees);

/// The three last arguments but one of `Rotate` for an angle.
struct Shears {
    int angle = 0;   ///< Degrees, truncated.
    int shearX = 0;  ///< -tan(angle / 2) * 65536, rounded; held to the range of an int near a half turn.
    int shearY = 0;  ///< sin(angle) * 65536, rounded.
};
Shears RotationShears(double degrees);

}  // namespace tessaloom
