#pragma once

#include <chrono>
#include <cstdint>

#include "platform/capture/CaptureChannel.h"
#include "platform/capture/TestPattern.h"

namespace tessaloom {

/// The test pattern as a camera: needs no thread, since a frame is drawn faster than one is copied. Its frame
/// number is the time since it was connected.
class PatternChannel final : public CaptureChannel {
public:
    using Clock = std::chrono::steady_clock;
    using TimeFunction = Clock::time_point (*)();

    explicit PatternChannel(const TestPattern::Format& format, TimeFunction now = &Clock::now);

    void Request() override { request_ = true; }
    const CapturedFrame* Take() override;
    CaptureState State() const override { return CaptureState::Delivering; }
    int Failures() const override { return 0; }
    std::string Words() const override { return "delivering"; }

private:
    TestPattern pattern_;
    TimeFunction now_;
    Clock::time_point start_;
    std::int64_t shown_ = -1;  ///< The last frame taken.
    CapturedFrame frame_;
    bool request_ = false;
};

}  // namespace tessaloom
