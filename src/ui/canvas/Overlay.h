#pragma once

#include <QLineF>
#include <QList>
#include <QPolygonF>
#include <QRectF>
#include <QRegion>
#include <QString>
#include <optional>
#include <span>

#include "model/edit/LayerId.h"
#include "ui/canvas/LayerFrame.h"
#include "ui/canvas/ViewMap.h"

class QFont;
class QPainter;
class QPalette;

namespace tessaloom {

class Canvas;

/// What is drawn above the picture: frames of the selected layers, the grips of a single one, guides, the
/// rectangle being spanned and the values beside the pointer. In the widget's units.
struct Overlay {
    QList<QPolygonF> frames;
    std::optional<LayerFrame> gripped;  ///< The single selected layer; in canvas pixels.
    ViewMap map;
    QRectF span;
    QList<QLineF> guides;
    QString values;
    QPointF pointer;
    QRectF room;  ///< Of the widget; the values and the turning grip stay within it.

    /// The frames of `selection`, with grips when it is one layer that has a size.
    static Overlay Of(const Canvas& canvas, std::span<const LayerId> selection, const ViewMap& map);

    /// The grip under a point of the widget.
    Grip GripAt(QPointF point) const;

    /// The place of a grip's middle.
    QPointF PlaceOf(const Grip& grip) const;
    QLineF TurnStalk() const;  ///< From the frame to the turning grip.

    /// All that `Paint` touches.
    QRegion Area(const QFont& font) const;

    void Paint(QPainter& painter, const QPalette& palette) const;

    bool operator==(const Overlay& other) const;

private:
    QList<Grip> Grips() const;
    QRectF ValuesBox(const QFont& font) const;
};

}  // namespace tessaloom
