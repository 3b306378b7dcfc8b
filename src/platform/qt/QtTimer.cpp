#include "platform/qt/QtTimer.h"

#include <QTimer>
#include <utility>

namespace tessaloom {

QtTimer::QtTimer() : timer_(std::make_unique<QTimer>()) {
    // A coarse timer drifts by up to a twentieth; the grid of sub-second activities would show it.
    timer_->setTimerType(Qt::PreciseTimer);
    QObject::connect(timer_.get(), &QTimer::timeout, [this] { Tick(); });
}

QtTimer::~QtTimer() = default;

void QtTimer::Start(int milliseconds, std::function<void()> tick) {
    tick_ = std::move(tick);
    timer_->start(milliseconds);
}

/// A tick that shows a box waits in an event loop of its own, in which the timer runs on.
void QtTimer::Tick() {
    if (std::exchange(ticking_, true)) return;
    tick_();
    ticking_ = false;
}

void QtTimer::Stop() { timer_->stop(); }

void QtTimer::Post(std::function<void()> work) { QTimer::singleShot(0, timer_.get(), std::move(work)); }

}  // namespace tessaloom
