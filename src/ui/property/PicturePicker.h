#pragma once

#include <QPixmap>
#include <QWidget>
#include <optional>

#include "imaging/DIB.h"

namespace tessaloom {

/// A picture from which colours are picked: a magnifier follows the pointer, a click picks a pixel, a drag a
/// rectangle. By keyboard: arrows move the point (ten pixels with Shift), Space picks.
class PicturePicker : public QWidget {
    Q_OBJECT

public:
    explicit PicturePicker(QWidget* parent = nullptr);

    /// Takes a copy; empty where there is none yet.
    void ShowPicture(const DIB& picture);
    const DIB& Picture() const { return picture_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// Pixels of the picture; at least one.
    void Picked(const QRect& pixels);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    QRectF Place() const;
    QPoint PixelAt(QPointF position) const;
    QRectF OnScreen(const QRect& pixels) const;
    QRect Dragged() const;
    void PointTo(std::optional<QPoint> pixel);
    void PaintMagnifier(QPainter& painter) const;

    bool Empty() const { return !picture_.DIBPtr(); }
    QColor ColourAt(QPoint pixel) const;
    void ScalePicture(const QSize& size);

    DIB picture_;
    QPixmap scaled_;               ///< `picture_` at the size at which it is shown; null: to be made.
    std::optional<QPoint> point_;  ///< The pixel under the pointer or the keyboard's point.
    std::optional<QPoint> press_;  ///< Where the drag that is under way began.
};

}  // namespace tessaloom
