#include "ui/shared/CommandIcon.h"

#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>
#include <QPixmapCache>
#include <algorithm>
#include <cmath>
#include <iterator>

namespace tessaloom {

namespace {

// Drawn on a field of 24 x 24 units.

void DrawNew(QPainter& painter) {
    painter.drawRect(QRectF(3, 5, 13, 14));
    painter.drawLine(QLineF(19, 2, 19, 10));
    painter.drawLine(QLineF(15, 6, 23, 6));
}

void DrawOpen(QPainter& painter) {
    painter.drawPolyline(QPolygonF({
        {3,  20},
        {3,  5 },
        {9,  5 },
        {11, 8 },
        {19, 8 },
        {19, 11},
        {7,  11},
        {3,  20},
        {18, 20},
        {22, 11},
        {19, 11}
    }));
}

void DrawSave(QPainter& painter) {
    painter.drawPolygon(QPolygonF({
        {4,  4 },
        {17, 4 },
        {20, 7 },
        {20, 20},
        {4,  20}
    }));
    painter.drawRect(QRectF(8, 4, 7, 5));
    painter.drawRect(QRectF(7, 13, 10, 7));
}

void DrawUndo(QPainter& painter) {
    QPainterPath path({4, 9});
    path.lineTo(14, 9);
    path.arcTo(QRectF(9, 9, 11, 10), 90, -180);
    path.lineTo(9, 19);
    painter.drawPath(path);
    painter.drawPolyline(QPolygonF({
        {9, 4 },
        {4, 9 },
        {9, 14}
    }));
}

void DrawRedo(QPainter& painter) {
    painter.translate(24, 0);
    painter.scale(-1, 1);
    DrawUndo(painter);
}

void DrawText(QPainter& painter) {
    painter.drawPolyline(QPolygonF({
        {5,  7},
        {5,  4},
        {19, 4},
        {19, 7}
    }));
    painter.drawLine(QLineF(12, 4, 12, 20));
    painter.drawLine(QLineF(9, 20, 15, 20));
}

void DrawPicture(QPainter& painter) {
    painter.drawRect(QRectF(3, 5, 18, 14));
    painter.drawPolyline(QPolygonF({
        {3,  17},
        {9,  11},
        {13, 15},
        {16, 12},
        {21, 17}
    }));
    painter.drawEllipse(QPointF(16, 8.5), 1.2, 1.2);
}

void DrawCamera(QPainter& painter) {
    painter.drawRoundedRect(QRectF(2, 7, 13, 11), 2, 2);
    painter.drawPolygon(QPolygonF({
        {15, 11},
        {21, 8 },
        {21, 17},
        {15, 14}
    }));
}

void DrawWeb(QPainter& painter) {
    painter.drawEllipse(QPointF(12, 12), 9, 9);
    painter.drawEllipse(QPointF(12, 12), 4, 9);
    painter.drawLine(QLineF(3, 12, 21, 12));
}

void DrawBlock(QPainter& painter) {
    painter.setBrush(painter.pen().color());
    painter.drawRect(QRectF(4, 7, 16, 10));
}

void DrawCanvas(QPainter& painter) {
    painter.drawRect(QRectF(3, 4, 18, 14));
    painter.drawRect(QRectF(6, 9, 8, 6));
    painter.drawLine(QLineF(9, 21, 15, 21));
}

void DrawAdd(QPainter& painter) {
    painter.drawLine(QLineF(12, 5, 12, 19));
    painter.drawLine(QLineF(5, 12, 19, 12));
}

void DrawDuplicate(QPainter& painter) {
    painter.drawRect(QRectF(4, 4, 11, 11));
    painter.drawPolyline(QPolygonF({
        {18, 9 },
        {20, 9 },
        {20, 20},
        {9,  20},
        {9,  18}
    }));
}

void DrawDelete(QPainter& painter) {
    painter.drawPolyline(QPolygonF({
        {6,  7 },
        {7,  20},
        {17, 20},
        {18, 7 }
    }));
    painter.drawLine(QLineF(4, 7, 20, 7));
    painter.drawLine(QLineF(10, 4, 14, 4));
}

void DrawUp(QPainter& painter) {
    painter.drawLine(QLineF(12, 5, 12, 19));
    painter.drawPolyline(QPolygonF({
        {6,  11},
        {12, 5 },
        {18, 11}
    }));
}

void DrawDown(QPainter& painter) {
    painter.translate(0, 24);
    painter.scale(1, -1);
    DrawUp(painter);
}

void DrawReset(QPainter& painter) {
    painter.drawArc(QRectF(5, 5, 14, 14), 150 * 16, -300 * 16);
    painter.drawPolyline(QPolygonF({
        {5,  4},
        {5,  9},
        {10, 9}
    }));
}

void DrawProperties(QPainter& painter) {
    constexpr double Knobs[][2] = {
        {8,  6 },
        {15, 12},
        {10, 18}
    };
    for (const auto& [x, y] : Knobs) {
        painter.drawLine(QLineF(3, y, 21, y));
        painter.save();
        painter.setBrush(painter.pen().color());
        painter.drawEllipse(QPointF(x, y), 2, 2);
        painter.restore();
    }
}

struct Sign {
    std::string_view name;
    void (*draw)(QPainter&);
};
constexpr Sign Signs[] = {
    {"new",        DrawNew       },
    {"open",       DrawOpen      },
    {"save",       DrawSave      },
    {"undo",       DrawUndo      },
    {"redo",       DrawRedo      },
    {"text",       DrawText      },
    {"picture",    DrawPicture   },
    {"camera",     DrawCamera    },
    {"web",        DrawWeb       },
    {"block",      DrawBlock     },
    {"canvas",     DrawCanvas    },
    {"properties", DrawProperties},
    {"add",        DrawAdd       },
    {"duplicate",  DrawDuplicate },
    {"delete",     DrawDelete    },
    {"up",         DrawUp        },
    {"down",       DrawDown      },
    {"reset",      DrawReset     },
};

QPixmap Drawn(const Sign& sign, int size, const QColor& colour) {
    constexpr double Field = 24;
    const QString key = QString("sign %1 %2 %3")
                            .arg(QLatin1String(sign.name.data(), static_cast<int>(sign.name.size())))
                            .arg(size)
                            .arg(colour.rgba(), 0, 16);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) return pixmap;
    pixmap = QPixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / Field, size / Field);
    painter.setPen(QPen(colour, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    sign.draw(painter);
    painter.end();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

}  // namespace

QIcon CommandIcon(std::string_view name, const QPalette& palette) {
    const auto sign = std::find_if(std::begin(Signs), std::end(Signs),
                                   [&](const Sign& candidate) { return candidate.name == name; });
    QIcon icon;
    if (sign == std::end(Signs)) return icon;
    for (const int size : {16, 24, 32, 48}) {
        icon.addPixmap(Drawn(*sign, size, palette.color(QPalette::ButtonText)));
        icon.addPixmap(Drawn(*sign, size, palette.color(QPalette::Disabled, QPalette::ButtonText)),
                       QIcon::Disabled);
    }
    return icon;
}

}  // namespace tessaloom
