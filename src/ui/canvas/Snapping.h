#pragma once

#include <QPointF>
#include <QRectF>
#include <optional>
#include <span>
#include <vector>

#include "model/edit/LayerId.h"

namespace tessaloom {

class Canvas;

/// The lines that what is dragged jumps to: edges and centres of the canvas and of the layers that stay. In
/// canvas pixels.
class Snapping {
public:
    Snapping() = default;
    Snapping(const Canvas& canvas, std::span<const LayerId> dragged);

    /// A shift, and the lines that it puts an edge or centre on.
    struct Hit {
        QPointF shift;
        std::optional<double> x, y;
    };

    /// How `frame` must be shifted for an edge or its centre to lie on the nearest line not farther than
    /// `reach`; each axis by itself.
    Hit Move(const QRectF& frame, double reach) const;

    /// The same for a single point, of which only the axes asked for are moved.
    Hit Point(QPointF point, bool horizontally, bool vertically, double reach) const;

private:
    std::vector<double> columns_, rows_;
};

}  // namespace tessaloom
