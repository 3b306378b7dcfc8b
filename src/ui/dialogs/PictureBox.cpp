#include "ui/dialogs/PictureBox.h"

#include <QPainter>
#include <utility>

#include "imaging/DIB.h"
#include "ui/shared/PictureImage.h"

namespace tessaloom {

namespace {

constexpr int LookMilliseconds = 100;

}  // namespace

PictureBox::PictureBox(std::function<Sight()> look, const QString& emptyText, QWidget* parent)
    : QWidget(parent), look_(std::move(look)), emptyText_(emptyText) {
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setSizePolicy(policy);
    timer_.setInterval(LookMilliseconds);
    connect(&timer_, &QTimer::timeout, this, [this] { Look(false); });
}

QSize PictureBox::sizeHint() const {
    const int unit = fontMetrics().height();
    return {24 * unit, 18 * unit};
}

QSize PictureBox::minimumSizeHint() const { return sizeHint() / 3; }

void PictureBox::Look(bool anew) {
    if (!isVisible() || visibleRegion().isEmpty()) return;
    const Sight sight = look_();
    const bool there = sight.picture && sight.picture->DIBPtr();
    if (!anew && there != image_.isNull() && (!there || sight.number == number_)) return;
    number_ = sight.number;
    image_ =
        there ? ScaledPicture(*sight.picture, (QSizeF(size()) * devicePixelRatioF()).toSize()) : QImage();
    image_.setDevicePixelRatio(devicePixelRatioF());
    update();
}

void PictureBox::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Dark));
    if (image_.isNull()) {
        painter.setPen(palette().color(QPalette::BrightText));
        painter.drawText(rect().adjusted(8, 8, -8, -8), Qt::AlignCenter | Qt::TextWordWrap, emptyText_);
        return;
    }
    const QSizeF shown = QSizeF(image_.size()) / image_.devicePixelRatio();
    painter.drawImage(QPointF((width() - shown.width()) / 2, (height() - shown.height()) / 2), image_);
}

void PictureBox::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    Look(true);
}

void PictureBox::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    timer_.start();
    Look(true);
}

void PictureBox::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    timer_.stop();
}

}  // namespace tessaloom
