#pragma once

#include "imaging/Resampler.h"

namespace tessaloom {

class DIB;

/// How `StretchBlt` finds its pixels; the numbers are those of the drawing surface's mode setting.
enum class StretchMode {
    ColorOnColor =
        3,         ///< The nearest source pixel: column floor((x + 1/2) * source width / width), rows alike.
    Halftone = 4,  ///< Means of the covered area when shrinking, linear between pixels when enlarging.
};

/// The drawing surface of one bitmap. Positions are pixels from the top left corner, rows counted downwards.
///
/// All drawing is clipped to both bitmaps; what lies outside of either is left alone. A surface whose bitmap
/// has no pixels accepts every call and draws nothing. Owned by its `DIB`.
class DeviceContext {
public:
    explicit DeviceContext(DIB& bitmap) : bitmap_(bitmap) {}
    DeviceContext(const DeviceContext&) = delete;
    DeviceContext& operator=(const DeviceContext&) = delete;

    /// Copies `width` x `height` pixels of `source` from (sourceX, sourceY) to (x, y). The source may be this
    /// surface, with overlap.
    void BitBlt(int x, int y, int width, int height, const DeviceContext& source, int sourceX, int sourceY);

    void SetStretchBltMode(StretchMode mode) { stretchMode_ = mode; }

    /// Fills the area (x, y, width, height) with the source area, scaled. The source area is cut to the
    /// source before scaling; the source must be another surface. Sizes below 1 draw nothing.
    void StretchBlt(int x, int y, int width, int height, const DeviceContext& source, int sourceX,
                    int sourceY, int sourceWidth, int sourceHeight);

    DIB& Bitmap() { return bitmap_; }
    const DIB& Bitmap() const { return bitmap_; }

private:
    struct Stretch;

    void StretchNearest(const Stretch& stretch);
    void StretchSmooth(const Stretch& stretch);

    DIB& bitmap_;
    StretchMode stretchMode_ = StretchMode::ColorOnColor;
    Resampler resampler_;
};

}  // namespace tessaloom
