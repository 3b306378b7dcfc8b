#include "ui/canvas/Overlay.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPalette>
#include <algorithm>
#include <cmath>

#include "model/Canvas.h"
#include "model/edit/Layers.h"

namespace tessaloom {

namespace {

// In the widget's units.
constexpr double GripSide = 8;
constexpr double GripReach = 7;
constexpr double TurnDistance = 24;   ///< Of the turning grip from the frame.
constexpr double RoomyGripSide = 36;  ///< Sides below it have no grip in their middle.
constexpr double RoomyFrame = 24;     ///< Frames below it are gripped only from outside.
constexpr double EmptySide = 16;      ///< Of the frame of a layer without a picture.
constexpr double Margin = 2;          ///< What pens draw beside their lines.
constexpr QPointF ValuesOffset(16, 20);

QRegion Around(const QRectF& rectangle, double margin = Margin) {
    return rectangle.adjusted(-margin, -margin, margin, margin).toAlignedRect();
}

/// The four sides, so that a large frame does not make all within it be painted again.
QRegion AroundSides(const QPolygonF& frame, double margin = Margin) {
    QRegion region;
    for (qsizetype i = 0; i < frame.size(); ++i)
        region += Around(QRectF(frame[i], frame[(i + 1) % frame.size()]).normalized(), margin);
    return region;
}

}  // namespace

Overlay Overlay::Of(const Canvas& canvas, std::span<const LayerId> selection, const ViewMap& map) {
    Overlay overlay;
    overlay.map = map;
    for (const LayerId layer : selection) {
        const auto place = Layers::GeometryOf(canvas, layer);
        if (!place) continue;
        const LayerFrame frame = LayerFrame::Of(*place);
        if (frame.width > 0 && frame.height > 0) {
            QPolygonF outline;
            for (const QPointF corner : frame.Outline()) outline << map.ToWidget(corner);
            overlay.frames << outline;
            if (selection.size() == 1) overlay.gripped = frame;
        } else {
            QRectF box(0, 0, EmptySide, EmptySide);
            box.moveCenter(map.ToWidget(frame.centre));
            overlay.frames << QPolygonF({box.topLeft(), box.topRight(), box.bottomRight(), box.bottomLeft()});
        }
    }
    return overlay;
}

bool Overlay::operator==(const Overlay& other) const {
    return frames == other.frames && map == other.map && gripped.has_value() == other.gripped.has_value() &&
           span == other.span && guides == other.guides && values == other.values &&
           (values.isEmpty() || pointer == other.pointer);
}

QList<Grip> Overlay::Grips() const {
    QList<Grip> grips;
    if (!gripped) return grips;
    for (int row = -1; row <= 1; ++row)
        for (int column = -1; column <= 1; ++column) {
            if (row == 0 && column == 0) continue;
            if (column == 0 && gripped->width * map.scale < RoomyGripSide) continue;
            if (row == 0 && gripped->height * map.scale < RoomyGripSide) continue;
            grips << Grip{Grip::Kind::Size, column, row};
        }
    grips << Grip{Grip::Kind::Turn, 0, -1};
    return grips;
}

QPointF Overlay::PlaceOf(const Grip& grip) const {
    if (!gripped) return {};
    if (grip.kind == Grip::Kind::Turn) return TurnStalk().p2();
    return map.ToWidget(gripped->Corner(grip.column, grip.row));
}

/// Above the frame; where that cannot be seen, beneath it, or else within it.
QLineF Overlay::TurnStalk() const {
    const auto stalk = [&](int row, double length) {
        const QPointF foot = map.ToWidget(gripped->Corner(0, row));
        return QLineF(foot, foot + LayerFrame::Turned({0, length}, gripped->angle));
    };
    const QLineF above = stalk(-1, -TurnDistance);
    const QRectF seen = room.adjusted(GripSide / 2, GripSide / 2, -GripSide / 2, -GripSide / 2);
    for (const QLineF& line : {above, stalk(1, TurnDistance), stalk(-1, TurnDistance)})
        if (seen.contains(line.p2())) return line;
    return above;
}

Grip Overlay::GripAt(QPointF point) const {
    const bool roomy = gripped && std::min(gripped->width, gripped->height) * map.scale >= RoomyFrame;
    if (!gripped || (!roomy && frames.front().containsPoint(point, Qt::OddEvenFill))) return {};
    for (const Grip& grip : Grips()) {
        const QPointF way = point - PlaceOf(grip);
        if (std::max(std::abs(way.x()), std::abs(way.y())) <= GripReach) return grip;
    }
    return {};
}

QRectF Overlay::ValuesBox(const QFont& font) const {
    const QFontMetricsF metrics(font);
    const double padding = metrics.height() / 4;
    QRectF box = QRectF(pointer + ValuesOffset, metrics.size(0, values))
                     .adjusted(-padding, -padding, padding, padding);
    if (box.right() > room.right()) box.moveRight(pointer.x() - padding);
    if (box.bottom() > room.bottom()) box.moveBottom(pointer.y() - padding);
    return box;
}

QRegion Overlay::Area(const QFont& font) const {
    QRegion area;
    for (const QPolygonF& frame : frames) {
        // A slanting side's box is large; then one box for all is cheaper.
        const bool upright = gripped ? std::fmod(gripped->angle, 90) == 0 : frames.size() <= 4;
        area += upright ? AroundSides(frame) : Around(frame.boundingRect());
    }
    for (const Grip& grip : Grips()) area += Around(QRectF(PlaceOf(grip), QSizeF()), GripSide);
    if (gripped) area += Around(QRectF(TurnStalk().p1(), TurnStalk().p2()).normalized());
    if (!span.isEmpty()) area += Around(span);
    for (const QLineF& guide : guides) area += Around(QRectF(guide.p1(), guide.p2()));
    if (!values.isEmpty()) area += Around(ValuesBox(font));
    return area;
}

void Overlay::Paint(QPainter& painter, const QPalette& palette) const {
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor accent = palette.color(QPalette::Highlight);
    const QPen halo(QColor(255, 255, 255, 160), 3), line(accent, 1.4);
    const auto stroke = [&](auto draw) {
        for (const QPen& pen : {halo, line}) {
            painter.setPen(pen);
            draw();
        }
    };
    painter.setBrush(Qt::NoBrush);
    for (const QPolygonF& frame : frames) stroke([&] { painter.drawPolygon(frame); });

    if (gripped) stroke([&] { painter.drawLine(TurnStalk()); });
    painter.setPen(line);
    painter.setBrush(Qt::white);
    for (const Grip& grip : Grips()) {
        QRectF box(0, 0, GripSide, GripSide);
        box.moveCenter(PlaceOf(grip));
        if (grip.kind == Grip::Kind::Turn)
            painter.drawEllipse(box);
        else
            painter.drawRect(box);
    }

    // Guides stand out from the frames: the accent's opposite.
    const QColor guideColour = QColor::fromHsv((accent.hsvHue() + 180 + 360) % 360, 255, 230);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(guideColour, 1));
    for (const QLineF& guide : guides) painter.drawLine(guide);

    if (!span.isEmpty()) {
        QColor fill = accent;
        fill.setAlpha(40);
        painter.setPen(line);
        painter.setBrush(fill);
        painter.drawRect(span);
    }
    if (!values.isEmpty()) {
        const QRectF box = ValuesBox(painter.font());
        painter.setPen(palette.color(QPalette::ToolTipText));
        painter.setBrush(palette.color(QPalette::ToolTipBase));
        painter.drawRoundedRect(box, 3, 3);
        painter.drawText(box, Qt::AlignCenter, values);
    }
}

}  // namespace tessaloom
