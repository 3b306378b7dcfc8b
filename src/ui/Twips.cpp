#include "ui/Twips.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>

namespace tessaloom::Twips {

int PerPixel(Qt::Orientation direction) {
    constexpr double PerInch = 1440;
    constexpr int Usual = 15;
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen) return Usual;
    const double dots =
        direction == Qt::Horizontal ? screen->logicalDotsPerInchX() : screen->logicalDotsPerInchY();
    return dots > 0 ? std::max(qRound(PerInch / dots), 1) : Usual;
}

}  // namespace tessaloom::Twips
