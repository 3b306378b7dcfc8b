#pragma once

#include <algorithm>
#include <chrono>
#include <thread>

#include "platform/CaptureSource.h"

namespace tessaloom {

/// Plays the pictures of a file at its own speed, pass after pass.
class Pacer {
public:
    explicit Pacer(const FrameInbox& inbox) : inbox_(inbox) {}

    /// A pass over the file begins. usual: seconds between its pictures where it does not say.
    void BeginPass(double usual) {
        usual_ = usual;
        pictures_ = 0;
    }

    /// Waits until the picture is due. time: its own, in seconds, below 0 when it has none.
    void Wait(double time) {
        const auto now = Clock::now();
        if (due_ == Clock::time_point{}) due_ = now;
        const double step = pictures_ > 0 && time >= 0 && last_ >= 0 ? time - last_ : usual_;
        // Times may jump in damaged or joined files.
        if (pictures_ > 0 || started_) due_ += Seconds(step > 0 && step <= LongestStep ? step : usual_);
        if (now - due_ > Seconds(1)) due_ = now;  // the computer slept, or cannot keep up
        last_ = time;
        started_ = true;
        ++pictures_;
        SleepUntil(due_);
    }

    /// The pass is over. A file of one picture is a still one, looked at again after a while.
    void EndPass() {
        if (pictures_ == 1) SleepUntil(Clock::now() + Seconds(1));
    }

private:
    using Clock = std::chrono::steady_clock;
    static constexpr double LongestStep = 10;  ///< Seconds.

    static Clock::duration Seconds(double seconds) {
        return std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    }

    void SleepUntil(Clock::time_point end) {
        constexpr std::chrono::milliseconds Slice{100};
        for (auto now = Clock::now(); now < end && !inbox_.Stopped(); now = Clock::now())
            std::this_thread::sleep_until(std::min(end, now + Slice));
    }

    const FrameInbox& inbox_;
    Clock::time_point due_{};  ///< Of the last picture.
    double usual_ = 0.04;      ///< Seconds.
    double last_ = -1;         ///< The last picture's own time, in seconds.
    long pictures_ = 0;        ///< Of this pass.
    bool started_ = false;
};

}  // namespace tessaloom
