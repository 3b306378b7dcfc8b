#pragma once

#include <memory>

#include "platform/Timer.h"

class QTimer;

namespace tessaloom {

/// A timer of the application's event loop, which must exist before it.
class QtTimer : public Timer {
public:
    QtTimer();
    ~QtTimer() override;

    void Start(int milliseconds, std::function<void()> tick) override;
    void Stop() override;
    void Post(std::function<void()> work) override;

private:
    void Tick();

    std::unique_ptr<QTimer> timer_;
    std::function<void()> tick_;
    bool ticking_ = false;
};

}  // namespace tessaloom
