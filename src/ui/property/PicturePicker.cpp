#include "ui/property/PicturePicker.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/property/ColourGroups.h"
#include "ui/shared/PictureImage.h"

namespace tessaloom {

namespace {

constexpr double LargestScale = 8;  ///< Of small pictures.
constexpr int Magnified = 11;       ///< Pixels across the magnifier; odd, one is in the middle.
constexpr int MagnifierField = 10;  ///< Screen pixels for each of them.

}  // namespace

PicturePicker::PicturePicker(QWidget* parent) : QWidget(parent) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::CrossCursor);
    setAccessibleName(tr("Picture to pick colours from"));
}

void PicturePicker::ShowPicture(const DIB& picture) {
    const bool sameSize = picture.Width() == picture_.Width() && picture.Height() == picture_.Height();
    picture_.CopyFrom(picture);
    scaled_ = {};
    if (!sameSize) {
        point_.reset();
        press_.reset();
    }
    update();
}

QSize PicturePicker::sizeHint() const { return minimumSizeHint() * 1.4; }

QSize PicturePicker::minimumSizeHint() const {
    const int unit = fontMetrics().averageCharWidth();
    return {unit * 40, unit * 30};
}

QRectF PicturePicker::Place() const {
    if (Empty()) return {};
    const double scale = std::min({static_cast<double>(width()) / picture_.Width(),
                                   static_cast<double>(height()) / picture_.Height(), LargestScale});
    QRectF place(0, 0, picture_.Width() * scale, picture_.Height() * scale);
    place.moveCenter(QRectF(rect()).center());
    return place;
}

QPoint PicturePicker::PixelAt(QPointF position) const {
    const QRectF place = Place();
    const auto pixel = [](double offset, double size, int count) {
        return std::clamp(static_cast<int>(std::floor(offset / size * count)), 0, count - 1);
    };
    return {pixel(position.x() - place.left(), place.width(), picture_.Width()),
            pixel(position.y() - place.top(), place.height(), picture_.Height())};
}

QRectF PicturePicker::OnScreen(const QRect& pixels) const {
    const QRectF place = Place();
    const double scale = place.width() / picture_.Width();
    return {place.left() + pixels.left() * scale, place.top() + pixels.top() * scale, pixels.width() * scale,
            pixels.height() * scale};
}

QRect PicturePicker::Dragged() const {
    return QRect(*press_, QSize(1, 1)).united(QRect(*point_, QSize(1, 1)));
}

void PicturePicker::PointTo(std::optional<QPoint> pixel) {
    if (pixel == point_) return;
    point_ = pixel;
    update();
}

void PicturePicker::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (Empty()) {
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, tr("The layer has no picture yet."));
        return;
    }
    const QRectF place = Place();
    if (scaled_.isNull()) ScalePicture((place.size() * devicePixelRatioF()).toSize().expandedTo(QSize(1, 1)));
    painter.drawPixmap(place, scaled_, QRectF(scaled_.rect()));
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRect(place.adjusted(1, 1, -1, -1));
    }
    if (!point_) return;
    if (press_ && *press_ != *point_) {
        painter.setPen(QPen(Qt::black, 1));
        painter.drawRect(OnScreen(Dragged()));
        painter.setPen(QPen(Qt::white, 1, Qt::DashLine));
        painter.drawRect(OnScreen(Dragged()));
    }
    PaintMagnifier(painter);
}

/// Pixels of a picture that is enlarged stay squares.
void PicturePicker::ScalePicture(const QSize& size) {
    const QImage image = ScaledPicture(picture_, size);
    scaled_ = QPixmap::fromImage(image.size() == size ? image : image.scaled(size));
}

QColor PicturePicker::ColourAt(QPoint pixel) const {
    return FromEngineColour(picture_.Pixel(pixel.x(), pixel.y()));
}

/// Beside the point, on the side where there is room.
void PicturePicker::PaintMagnifier(QPainter& painter) const {
    constexpr int Side = Magnified * MagnifierField, Away = 16;
    const int line = fontMetrics().height() + 4;
    const QPointF at = OnScreen(QRect(*point_, QSize(1, 1))).center();
    QRectF frame(at + QPointF(Away, Away), QSizeF(Side, Side + line));
    if (frame.right() > width()) frame.moveRight(at.x() - Away);
    if (frame.bottom() > height()) frame.moveBottom(at.y() - Away);
    frame.moveTopLeft({std::max(frame.left(), 0.0), std::max(frame.top(), 0.0)});

    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(QPalette::Window));
    painter.drawRect(frame);
    const QRect whole(0, 0, picture_.Width(), picture_.Height());
    for (int row = 0; row < Magnified; ++row)
        for (int column = 0; column < Magnified; ++column) {
            const QPoint pixel = *point_ + QPoint(column - Magnified / 2, row - Magnified / 2);
            if (!whole.contains(pixel)) continue;
            painter.fillRect(QRectF(frame.left() + column * MagnifierField,
                                    frame.top() + row * MagnifierField, MagnifierField, MagnifierField),
                             ColourAt(pixel));
        }
    constexpr int Middle = Magnified / 2 * MagnifierField;
    const QRectF middle(frame.left() + Middle, frame.top() + Middle, MagnifierField, MagnifierField);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(Qt::black);
    painter.drawRect(middle.adjusted(-1, -1, 0, 0));
    painter.setPen(Qt::white);
    painter.drawRect(middle.adjusted(-2, -2, 1, 1));
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawRect(frame);
    painter.drawText(QRectF(frame.left(), frame.bottom() - line, Side, line), Qt::AlignCenter,
                     ColourAt(*point_).name().toUpper());
}

void PicturePicker::resizeEvent(QResizeEvent* event) {
    scaled_ = {};
    QWidget::resizeEvent(event);
}

void PicturePicker::mouseMoveEvent(QMouseEvent* event) {
    if (Empty()) return;
    const bool inside = press_ || Place().contains(event->position());
    PointTo(inside ? std::optional(PixelAt(event->position())) : std::nullopt);
}

void PicturePicker::mousePressEvent(QMouseEvent* event) {
    if (Empty() || event->button() != Qt::LeftButton || !Place().contains(event->position())) return;
    PointTo(PixelAt(event->position()));
    press_ = point_;
}

void PicturePicker::mouseReleaseEvent(QMouseEvent* event) {
    if (!press_ || event->button() != Qt::LeftButton) return;
    PointTo(PixelAt(event->position()));
    const QRect pixels = Dragged();
    press_.reset();
    update();
    Q_EMIT Picked(pixels);
}

void PicturePicker::leaveEvent(QEvent*) {
    if (!press_) PointTo(std::nullopt);
}

void PicturePicker::focusOutEvent(QFocusEvent* event) {
    PointTo(std::nullopt);
    press_.reset();
    QWidget::focusOutEvent(event);
}

void PicturePicker::keyPressEvent(QKeyEvent* event) {
    const int step = event->modifiers() & Qt::ShiftModifier ? 10 : 1;
    QPoint move;
    switch (event->key()) {
        case Qt::Key_Left:
            move = {-step, 0};
            break;
        case Qt::Key_Right:
            move = {step, 0};
            break;
        case Qt::Key_Up:
            move = {0, -step};
            break;
        case Qt::Key_Down:
            move = {0, step};
            break;
        case Qt::Key_Space:
            if (point_) Q_EMIT Picked(QRect(*point_, QSize(1, 1)));
            return;
        default:
            QWidget::keyPressEvent(event);
            return;
    }
    if (Empty()) return;
    const QPoint to = point_ ? *point_ + move : QPoint(picture_.Width(), picture_.Height()) / 2;
    PointTo(
        QPoint(std::clamp(to.x(), 0, picture_.Width() - 1), std::clamp(to.y(), 0, picture_.Height() - 1)));
}

}  // namespace tessaloom
