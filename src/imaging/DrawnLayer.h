#pragma once

#include "imaging/PixelArea.h"

namespace tessaloom {

class DIB;

/// What a layer shows, and where: while it stays equal, the layer looks the same.
///
/// Areas are not cut at the canvas's edges; they are empty where nothing is drawn.
struct LayerLook {
    PixelArea picture;
    PixelArea shadow;
    unsigned revision = 0;  ///< Of the layer's image.
    bool opaque = false;    ///< Nothing shines through the picture.

    bool operator==(const LayerLook&) const = default;
};

/// A layer as the composition of its canvas sees it.
class DrawnLayer {
public:
    /// Brings the layer's picture up to date and describes it. canvasHeight: in pixels.
    virtual LayerLook Look(int canvasHeight) = 0;

    /// Lays the picture onto that part of `canvas`, and on nothing beside it. `within` lies on the bitmap.
    virtual void MergeImageTo(DIB& canvas, const PixelArea& within) = 0;

    /// Adds the shadow's density to that part of `shadow`, a bitmap of the canvas's size.
    virtual void MergeShadowTo(DIB& shadow, const PixelArea& within) = 0;

protected:
    ~DrawnLayer() = default;
};

}  // namespace tessaloom
