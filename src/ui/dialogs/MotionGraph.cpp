#include "ui/dialogs/MotionGraph.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <utility>

#include "video/MotionDetect.h"

namespace tessaloom {

namespace {

constexpr int SampleMilliseconds = 100;
constexpr std::size_t Samples = 600;  // a minute

}  // namespace

MotionGraph::MotionGraph(std::function<const MotionDetect*()> find, QWidget* parent)
    : QWidget(parent), find_(std::move(find)) {
    setObjectName("coverageGraph");
    setAccessibleName("Coverage over the last minute");
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    timer_.setInterval(SampleMilliseconds);
    connect(&timer_, &QTimer::timeout, this, &MotionGraph::Take);
}

QSize MotionGraph::sizeHint() const {
    const int unit = fontMetrics().height();
    return {24 * unit, 5 * unit};
}

QSize MotionGraph::minimumSizeHint() const { return {sizeHint().width() / 3, sizeHint().height() * 3 / 4}; }

void MotionGraph::Take() {
    const MotionDetect* motion = find_();
    if (!motion) return;
    const double trigger = motion->LastMotionTriggerTime();
    const bool triggered = std::exchange(lastTrigger_, trigger) != trigger;
    samples_.push_back({motion->Enabled() ? motion->LastMeasurement().coverage : 0, triggered});
    if (samples_.size() > Samples) samples_.pop_front();
    update();
}

double MotionGraph::Height(double level) const {
    return height() - 1 - std::clamp(level, 0.0, 1.0) * (height() - 2);
}

void MotionGraph::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    painter.setRenderHint(QPainter::Antialiasing);
    const double step = static_cast<double>(width()) / Samples;
    const double first = width() - step * static_cast<double>(samples_.size());
    QPainterPath line(QPointF(first, height()));
    double x = first;
    for (const Sample& sample : samples_) {
        line.lineTo(x, Height(static_cast<double>(sample.coverage)));
        if (sample.triggered) {
            painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
            painter.drawLine(QPointF(x, 0), QPointF(x, height()));
        }
        x += step;
    }
    line.lineTo(x, height());
    QColor fill = palette().color(QPalette::Text);
    fill.setAlphaF(0.35F);
    painter.fillPath(line, fill);
    if (const MotionDetect* motion = find_(); motion && motion->CoverageLimit() > 0) {
        const double limit = Height(static_cast<double>(motion->CoverageLimit()));
        painter.setPen(QPen(palette().color(QPalette::Link), 1.5, Qt::DashLine));
        painter.drawLine(QPointF(0, limit), QPointF(width(), limit));
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void MotionGraph::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (const MotionDetect* motion = find_()) lastTrigger_ = motion->LastMotionTriggerTime();
    timer_.start();
}

void MotionGraph::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    timer_.stop();
    samples_.clear();
}

}  // namespace tessaloom
