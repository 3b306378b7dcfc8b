#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <vector>

#include "platform/CaptureSource.h"
#include "platform/capture/CaptureChannel.h"

namespace tessaloom {

/// The one place where the thread of a source and the engine meet. Three buffers take turns (being filled,
/// ready, in the engine's hands), so neither side ever waits for more than an exchange of two of them.
///
/// A frame is worth converting when a request waits for it, or when the rhythm of the requests so far lets
/// one be expected before the next frame.
class FrameExchange final : public FrameInbox {
public:
    using Clock = std::chrono::steady_clock;
    using TimeFunction = Clock::time_point (*)();

    explicit FrameExchange(TimeFunction now = &Clock::now) : now_(now), start_(now()) {}

    // The source's side

    bool Stopped() const override { return stopped_.load(std::memory_order_relaxed); }
    bool Arrived() override;
    std::span<std::uint8_t> Begin(CaptureFormat format) override;
    void Commit() override;
    bool Accepts(int width, int height) override;

    /// A connection begins. Ended: it is over, and why; true when frames had arrived.
    void BeginConnection();
    bool EndConnection(std::string reason);

    /// Sleeps, unless and until stopped.
    void Pause(std::chrono::milliseconds length);

    // The engine's side

    void Stop();
    void Request();
    const CapturedFrame* Take();
    CaptureState State() const { return state_.load(std::memory_order_relaxed); }
    int Failures() const { return failures_.load(std::memory_order_relaxed); }
    std::string Words() const;
    std::string TakeError();

private:
    struct Buffer {
        std::vector<std::uint8_t> bytes;
        CaptureFormat format;
        Clock::time_point arrival{};
        long arrivalNumber = 0;
        int connection = 0;
    };

    bool Outdated(const Buffer& buffer, Clock::time_point now) const;

    const TimeFunction now_;
    const Clock::time_point start_;
    std::atomic<bool> stopped_ = false;
    std::atomic<CaptureState> state_ = CaptureState::Opening;
    std::atomic<int> failures_ = 0;

    Buffer filling_;  ///< The source's own.
    Buffer shown_;    ///< The engine's own, as is what follows.
    CapturedFrame frame_;
    int shownConnection_ = 0;

    mutable std::mutex mutex_;  ///< For what follows.
    std::condition_variable wake_;
    Buffer ready_;
    bool fresh_ = false;    ///< `ready_` waits to be taken.
    bool request_ = false;  ///< The engine waits for a frame.
    Clock::time_point lastRequest_{};
    Clock::duration requestInterval_{};
    Clock::time_point lastArrival_{};
    Clock::duration arrivalInterval_{};
    long arrivals_ = 0;
    int connection_ = 0;
    int arrivedInConnection_ = 0;
    std::string reason_;
    std::string error_;
    std::string lastError_;
};

}  // namespace tessaloom
