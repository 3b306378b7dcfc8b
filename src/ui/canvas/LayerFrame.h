#pragma once

#include <QPointF>
#include <QPolygonF>
#include <QRectF>

#include "model/edit/Layers.h"

namespace tessaloom {

/// A grip of a layer's frame. Columns and rows count from the frame's middle: -1, 0, 1.
struct Grip {
    enum class Kind { None, Size, Turn };

    Kind kind = Kind::None;
    int column = 0, row = 0;

    bool operator==(const Grip&) const = default;
};

/// How a layer's size follows a grip.
struct SizeRules {
    bool proportional = false;
    bool fromCentre = false;
};

/// The frame of a turned layer, in canvas pixels: width and height before turning, turned about its centre.
struct LayerFrame {
    QPointF centre;
    double width = 0, height = 0;
    double angle = 0;  ///< Degrees counterclockwise.

    static LayerFrame Of(const Layers::Geometry& place) {
        return {
            {place.centreX, place.centreY},
            place.width, place.height, place.angle
        };
    }

    /// A point given from the centre, rightwards and downwards along the frame's own sides.
    QPointF At(QPointF local) const { return centre + Turned(local, angle); }
    QPointF Corner(int column, int row) const { return At({column * width / 2, row * height / 2}); }

    /// Clockwise from the upper left.
    QPolygonF Outline() const;
    QRectF Bounds() const { return Outline().boundingRect(); }

    /// The frame once its grip was dragged by `by`. Sides come out as whole numbers that a layer can have.
    LayerFrame Resized(const Grip& grip, QPointF by, SizeRules rules) const;

    /// The angle once the pointer went from one place to another about the centre: whole degrees, 0 .. 359;
    /// multiples of `step`.
    double TurnedTo(QPointF from, QPointF to, double step) const;

    /// `point` turned about (0, 0) by `degrees` counterclockwise, as seen with y downwards.
    static QPointF Turned(QPointF point, double degrees);
};

}  // namespace tessaloom
