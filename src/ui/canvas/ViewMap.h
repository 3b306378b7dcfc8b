#pragma once

#include <QPointF>
#include <QRectF>

namespace tessaloom {

/// How the pixels of a canvas lie on its widget.
struct ViewMap {
    double scale = 1;  ///< The widget's units a canvas pixel; above 0.
    QPointF origin;    ///< The canvas's top left corner on the widget.

    QPointF ToWidget(QPointF canvas) const { return canvas * scale + origin; }
    QRectF ToWidget(const QRectF& canvas) const {
        return {ToWidget(canvas.topLeft()), canvas.size() * scale};
    }
    QPointF ToCanvas(QPointF widget) const { return (widget - origin) / scale; }
    double ToCanvas(double length) const { return length / scale; }

    bool operator==(const ViewMap&) const = default;
};

}  // namespace tessaloom
