#pragma once

namespace tessaloom {

/// The nine points of a layer's final picture that may lie at the layer's position; the numbers that the
/// files hold.
enum class Anchor {
    TopLeft = 0,
    TopCentre,
    TopRight,
    MiddleLeft,
    Centre,
    MiddleRight,
    BottomLeft,
    BottomCentre,
    BottomRight,
};

/// The range of an `Alignment` property.
inline constexpr int FirstAlignment = 0;
inline constexpr int LastAlignment = 8;

/// Pixels to the right and down.
struct Offset {
    int x = 0;
    int y = 0;

    bool operator==(const Offset&) const = default;
};

/// What is added to a position to find the top left corner of a picture of `width` x `height` pixels whose
/// anchor `alignment` lies there. A centre of an odd number of pixels is its middle pixel; a number that is
/// no anchor counts as the top left.
Offset AlignmentOffset(int alignment, int width, int height);

}  // namespace tessaloom
