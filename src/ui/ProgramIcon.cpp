#include "ui/ProgramIcon.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPixmap>

namespace tessaloom {

namespace {

/// Units of the drawing across its side.
constexpr double Side = 64;

/// A ribbon from its first colour to its last, along or across it.
struct Ribbon {
    QRectF place;
    QRgb first, last;
};
constexpr QRgb Ground = 0xFF1F2A38;
const Ribbon Lying[] = {
    {{8, 16, 48, 14}, 0xFF2AA198, 0xFF17736F},
    {{8, 34, 48, 14}, 0xFFEF6F6C, 0xFFC74B63},
};
const Ribbon Standing[] = {
    {{16, 8, 14, 48}, 0xFF7CC4F0, 0xFF2F7FC4},
    {{34, 8, 14, 48}, 0xFFFFD166, 0xFFF29E38},
};

void Paint(QPainter& painter, const Ribbon& ribbon) {
    const bool lying = ribbon.place.width() > ribbon.place.height();
    QLinearGradient colours(ribbon.place.topLeft(),
                            lying ? ribbon.place.topRight() : ribbon.place.bottomLeft());
    colours.setColorAt(0, QColor(ribbon.first));
    colours.setColorAt(1, QColor(ribbon.last));
    painter.setBrush(colours);
    painter.setPen(QPen(QColor(Ground), 2));
    painter.drawRoundedRect(ribbon.place, 3, 3);
}

}  // namespace

void PaintProgramIcon(QPainter& painter, const QRect& place) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(place.topLeft());
    painter.scale(place.width() / Side, place.height() / Side);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(Ground));
    painter.drawRoundedRect(QRectF(2, 2, 60, 60), 12, 12);
    for (const Ribbon& ribbon : Lying) Paint(painter, ribbon);
    for (const Ribbon& ribbon : Standing) Paint(painter, ribbon);
    // At every second crossing the lying ribbon comes over the standing one.
    for (const int crossing : {0, 1}) {
        const QRectF over = Standing[1 - crossing].place.adjusted(-2, 0, 2, 0);
        painter.setClipRect(over);
        Paint(painter, Lying[crossing]);
    }
    painter.restore();
}

QIcon ProgramIcon() {
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64, 128}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        PaintProgramIcon(painter, pixmap.rect());
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

}  // namespace tessaloom
