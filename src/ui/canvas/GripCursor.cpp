#include "ui/canvas/GripCursor.h"

#include <QPainter>
#include <QPixmap>
#include <cmath>
#include <numbers>

namespace tessaloom {

namespace {

constexpr int Side = 24;

/// An arc that ends in an arrow; no theme has such a pointer.
QCursor TurnCursor() {
    QPixmap pixmap(Side, Side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF arc(5, 5, Side - 10, Side - 10);
    const QPolygonF head({
        {arc.right() - 4, arc.center().y() - 1},
        {arc.right() + 4, arc.center().y() - 1},
        {arc.right(),     arc.center().y() + 5}
    });
    for (const QPen& pen : {QPen(Qt::white, 4), QPen(Qt::black, 2)}) {
        painter.setPen(pen);
        painter.drawArc(arc, 0, 270 * 16);
        painter.setBrush(pen.color());
        painter.setPen(QPen(pen.color(), pen.widthF() - 1.5));
        painter.drawPolygon(head);
        painter.setBrush(Qt::NoBrush);
    }
    return QCursor(pixmap);
}

}  // namespace

QCursor GripCursor(const Grip& grip, double angle) {
    if (grip.kind == Grip::Kind::Turn) {
        static const QCursor turn = TurnCursor();
        return turn;
    }
    constexpr Qt::CursorShape Shapes[] = {Qt::SizeHorCursor, Qt::SizeBDiagCursor, Qt::SizeVerCursor,
                                          Qt::SizeFDiagCursor};
    const double direction = std::atan2(-grip.row, grip.column) * 180 / std::numbers::pi + angle;
    const long eighth = std::lround(direction / 45);
    return Shapes[((eighth % 4) + 4) % 4];
}

}  // namespace tessaloom
