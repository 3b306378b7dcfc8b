#include "ui/SplashWindow.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>

#include "core/Version.h"
#include "ui/ProgramIcon.h"

namespace tessaloom {

SplashWindow::SplashWindow() : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint) {
    setObjectName("Splash");
    const int unit = fontMetrics().height();
    resize(22 * unit, 9 * unit);
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
}

void SplashWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const int unit = fontMetrics().height();
    painter.fillRect(rect(), palette().window());
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    const QRect picture(2 * unit, 2 * unit, 5 * unit, 5 * unit);
    PaintProgramIcon(painter, picture);

    painter.setPen(palette().color(QPalette::WindowText));
    QFont title = font();
    title.setPointSizeF(title.pointSizeF() * 2);
    title.setBold(true);
    const QRect text(picture.right() + 2 * unit, picture.top(), rect().right() - picture.right() - 3 * unit,
                     picture.height());
    painter.setFont(title);
    painter.drawText(text, Qt::AlignLeft | Qt::AlignTop, "Tessaloom");
    painter.setFont(font());
    painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter,
                     "\nVersion " + QString::fromUtf8(Version.data(), Version.size()));
    painter.drawText(text, Qt::AlignLeft | Qt::AlignBottom, "Live pictures, on time");
}

}  // namespace tessaloom
