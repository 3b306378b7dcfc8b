#pragma once

#include <QWidget>
#include <functional>

namespace tessaloom {

class MotionDetect;
class Workspace;

/// How often each difference value occurs in the last comparison, on a logarithmic scale, with the two
/// limits, which can be dragged.
class MotionHistogram : public QWidget {
    Q_OBJECT

public:
    /// find: the detector; null when it has gone
    MotionHistogram(Workspace& workspace, std::function<MotionDetect*()> find, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void LimitDragged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    enum class Limit { None, Dark, Light };

    double X(double value) const;
    int ValueAt(double x) const;
    Limit LimitAt(double x) const;

    std::function<MotionDetect*()> find_;
    Limit dragged_ = Limit::None;
};

}  // namespace tessaloom
