#pragma once

#include <cstdint>
#include <span>

namespace tessaloom {

class DIB;

/// What opacity maps are made of: bitmaps whose components say how much of a layer's pixel shows, 0 nothing
/// .. 255 all. A bitmap without pixels is left alone.
namespace OpacityMap {

/// Fills `map` with a soft edge: a rectangle whose corners are rounded with the larger of `radius` and
/// `width` (pixels; half the shorter side at most), and in which opacity grows linearly with the distance
/// from the edge, up to all at `width` pixels. width 0: a hard edge, smoothed over one pixel at the corners.
void FillFeathered(DIB& map, int width, int radius);

/// Turns a picture into a map: its `alpha` where there is one (rows of its width, bottom row first), else its
/// intensity (0.30 red + 0.59 green + 0.11 blue).
void FromPicture(DIB& picture, std::span<const std::uint8_t> alpha);

/// map * other / 255; both of the same size.
void Multiply(DIB& map, const DIB& other);

/// 255 - map.
void Negate(DIB& map);

}  // namespace OpacityMap
}  // namespace tessaloom
