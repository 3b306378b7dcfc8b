#include "ui/dialogs/MotionHistogram.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "ui/shared/Workspace.h"
#include "video/MotionDetect.h"

namespace tessaloom {

namespace {

constexpr int Values = 256;
constexpr double GripPixels = 6;  // how near the pointer must be to a limit

}  // namespace

MotionHistogram::MotionHistogram(Workspace& workspace, std::function<MotionDetect*()> find, QWidget* parent)
    : QWidget(parent), find_(std::move(find)) {
    setObjectName("histogram");
    setAccessibleName("How often each difference occurs, with the limits of darker and lighter");
    setToolTip(
        "How often each difference occurs, from darker on the left to lighter on the right.\n"
        "Drag the lines to move the limits.");
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    setMouseTracking(true);
    connect(&workspace, &Workspace::Pulse, this, qOverload<>(&QWidget::update));
}

QSize MotionHistogram::sizeHint() const {
    const int unit = fontMetrics().height();
    return {24 * unit, 5 * unit};
}

QSize MotionHistogram::minimumSizeHint() const {
    return {sizeHint().width() / 3, sizeHint().height() * 3 / 4};
}

double MotionHistogram::X(double value) const { return value * width() / Values; }

int MotionHistogram::ValueAt(double x) const {
    return static_cast<int>(std::floor(x * Values / std::max(width(), 1)));
}

MotionHistogram::Limit MotionHistogram::LimitAt(double x) const {
    const MotionDetect* motion = find_();
    if (!motion) return Limit::None;
    const double dark = std::abs(x - X(motion->DarkerMotionLimit() + 1));
    const double light = std::abs(x - X(motion->BrighterMotionLimit()));
    if (std::min(dark, light) > GripPixels) return Limit::None;
    return dark < light ? Limit::Dark : Limit::Light;
}

void MotionHistogram::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    MotionDetect* motion = find_();
    if (!motion) return;
    const auto& counts = motion->Histogram();
    const int most = *std::ranges::max_element(counts);
    const double scale = most > 0 ? (height() - 2) / std::log2(most + 1.0) : 0;
    QColor quiet = palette().color(QPalette::Text);
    quiet.setAlphaF(0.35F);
    for (int value = 0; value < Values; ++value) {
        const bool beyond = value <= motion->DarkerMotionLimit() || value >= motion->BrighterMotionLimit();
        const double tall = std::log2(counts[static_cast<std::size_t>(value)] + 1.0) * scale;
        painter.fillRect(QRectF(X(value), height() - 1 - tall, X(1), tall),
                         beyond ? palette().color(QPalette::Highlight) : quiet);
    }
    painter.setPen(QPen(palette().color(QPalette::Link), 1.5, Qt::DashLine));
    for (const int limit : {motion->DarkerMotionLimit() + 1, motion->BrighterMotionLimit()})
        painter.drawLine(QPointF(X(limit), 0), QPointF(X(limit), height()));
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void MotionHistogram::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) dragged_ = LimitAt(event->position().x());
}

void MotionHistogram::mouseMoveEvent(QMouseEvent* event) {
    const double x = event->position().x();
    setCursor(dragged_ != Limit::None || LimitAt(x) != Limit::None ? Qt::SizeHorCursor : Qt::ArrowCursor);
    MotionDetect* motion = find_();
    if (dragged_ == Limit::None || !motion) return;
    if (dragged_ == Limit::Dark)
        motion->SetDarkerMotionLimit(ValueAt(x) - 1);
    else
        motion->SetBrighterMotionLimit(ValueAt(x));
    update();
    Q_EMIT LimitDragged();
}

void MotionHistogram::mouseReleaseEvent(QMouseEvent*) { dragged_ = Limit::None; }

}  // namespace tessaloom
