#pragma once

#include "imaging/DIB.h"
#include "imaging/PixelArea.h"
#include "imaging/pixelops/Target.h"

namespace tessaloom {

/// A part of a canvas that is drawn onto, and nothing beside it. Its pixels may lie anywhere.
struct CanvasPart {
    pixelops::Target pixels;  ///< Of the size of `area`.
    PixelArea area;           ///< Which part it is.
    int canvasHeight;         ///< Pixels.

    /// In place; `area` lies on `canvas`.
    static CanvasPart Of(DIB& canvas, const PixelArea& area) {
        return {canvas.Part(area), area, canvas.Height()};
    }
    static CanvasPart Of(DIB& canvas) { return Of(canvas, canvas.Whole()); }

    /// A part of it; `inner`, a part of the canvas, lies in `area`.
    CanvasPart Part(const PixelArea& inner) const {
        return {
            {pixels.bits + (inner.first - area.first) * pixels.rowBytes +
                 (inner.left - area.left) * std::ptrdiff_t{3},
             inner.Width(), inner.Height(), pixels.rowBytes},
            inner,
            canvasHeight
        };
    }
};

}  // namespace tessaloom
