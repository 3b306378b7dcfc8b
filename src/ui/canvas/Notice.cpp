#include "ui/canvas/Notice.h"

#include <QAccessible>
#include <QEvent>
#include <QFontMetrics>
#include <QPainter>

namespace tessaloom {

namespace {

constexpr int StayMilliseconds = 6000;
constexpr int FadeMilliseconds = 700;

}  // namespace

Notice::Notice(QWidget* over) : QWidget(over) {
    setObjectName("Notice");
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
    over->installEventFilter(this);
    stay_.setSingleShot(true);
    stay_.setInterval(StayMilliseconds);
    fade_.setDuration(FadeMilliseconds);
    fade_.setStartValue(1.0);
    fade_.setEndValue(0.0);
    connect(&stay_, &QTimer::timeout, &fade_, [this] { fade_.start(); });
    connect(&fade_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        opacity_ = value.toDouble();
        update();
    });
    connect(&fade_, &QVariantAnimation::finished, this, &QWidget::hide);
}

void Notice::Tell(const QString& text) {
    text_ = text;
    fade_.stop();
    opacity_ = 1;
    setAccessibleName(text);
    LayOut();
    show();
    raise();
    update();
    stay_.start();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void Notice::LayOut() {
    const QFontMetrics metrics(font());
    const int padding = metrics.height() / 2;
    const QRect room = parentWidget()->rect().adjusted(padding, padding, -padding, -padding);
    const QRect text = metrics.boundingRect(QRect(0, 0, std::max(room.width() - 2 * padding, 1), 10000),
                                            Qt::TextWordWrap | Qt::AlignHCenter, text_);
    QRect box(QPoint(), text.size() + QSize(2 * padding, padding));
    box.moveCenter(room.center());
    box.moveBottom(room.bottom());
    setGeometry(box);
}

bool Notice::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize && isVisible()) LayOut();
    return QWidget::eventFilter(watched, event);
}

void Notice::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(opacity_);
    painter.setPen(palette().color(QPalette::ToolTipText));
    painter.setBrush(palette().color(QPalette::ToolTipBase));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
    const int padding = fontMetrics().height() / 2;
    painter.drawText(rect().adjusted(padding, 0, -padding, 0), Qt::AlignCenter | Qt::TextWordWrap, text_);
}

}  // namespace tessaloom
