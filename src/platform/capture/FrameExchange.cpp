#include "platform/capture/FrameExchange.h"

#include <new>
#include <utility>

#include "platform/PictureLimits.h"

namespace tessaloom {

namespace {

using namespace std::chrono_literals;

/// A tick or two: the engine looks at its feeds every 10 ms.
constexpr auto Tolerance = 15ms;

/// How long after the time of an expected request frames are still kept ready for it.
constexpr auto Patience = 1s;

/// A frame that lay longer than this is shown to nobody: it would pass as the present.
constexpr auto LongestWait = 5s;

int RowBytes(const CaptureFormat& format) { return (format.width * format.bitCount / 8 + 3) & ~3; }

std::string Size(int width, int height) {
    return std::to_string(width) + " x " + std::to_string(height) + " pixels";
}

}  // namespace

bool FrameExchange::Arrived() {
    const auto now = now_();
    const std::lock_guard lock(mutex_);
    arrivalInterval_ = arrivedInConnection_ > 0 ? now - lastArrival_ : 0ms;
    lastArrival_ = now;
    ++arrivals_;
    ++arrivedInConnection_;
    state_.store(CaptureState::Delivering, std::memory_order_relaxed);
    if (request_) return true;
    const auto expected = lastRequest_ + requestInterval_;
    return lastRequest_ != Clock::time_point{} && now + arrivalInterval_ + Tolerance >= expected &&
           now <= expected + Patience;
}

std::span<std::uint8_t> FrameExchange::Begin(CaptureFormat format) {
    if (!Accepts(format.width, format.height)) return {};
    format.sizeImage = RowBytes(format) * format.height;
    filling_.format = format;
    filling_.bytes.resize(static_cast<std::size_t>(format.sizeImage));
    return filling_.bytes;
}

void FrameExchange::Commit() {
    const std::lock_guard lock(mutex_);
    filling_.arrival = lastArrival_;
    filling_.arrivalNumber = arrivals_;
    filling_.connection = connection_;
    std::swap(filling_, ready_);
    fresh_ = true;
}

bool FrameExchange::Accepts(int width, int height) {
    // The two limits differ: one is that of the bitmaps, the other keeps hostile headers from taking all
    // memory.
    if (width <= CaptureFormat::MaxSide && height <= CaptureFormat::MaxSide &&
        PictureLimits().Allow(width, height))
        return true;
    const std::lock_guard lock(mutex_);
    std::string error = "Frames of " + Size(width, height) + " are refused";
    if (error != lastError_) lastError_ = error_ = std::move(error);
    return false;
}

void FrameExchange::BeginConnection() {
    const std::lock_guard lock(mutex_);
    ++connection_;
    arrivedInConnection_ = 0;
}

bool FrameExchange::EndConnection(std::string reason) {
    const std::lock_guard lock(mutex_);
    reason_ = std::move(reason);
    const bool delivered = arrivedInConnection_ > 0;
    if (!delivered) failures_.fetch_add(1, std::memory_order_relaxed);
    state_.store(CaptureState::Waiting, std::memory_order_relaxed);
    return delivered;
}

void FrameExchange::Pause(std::chrono::milliseconds length) {
    std::unique_lock lock(mutex_);
    wake_.wait_for(lock, length, [this] { return Stopped(); });
}

void FrameExchange::Stop() {
    {
        const std::lock_guard lock(mutex_);
        stopped_ = true;
    }
    wake_.notify_all();
}

void FrameExchange::Request() {
    const auto now = now_();
    const std::lock_guard lock(mutex_);
    if (lastRequest_ != Clock::time_point{}) requestInterval_ = now - lastRequest_;
    lastRequest_ = now;
    request_ = true;
}

const CapturedFrame* FrameExchange::Take() {
    {
        const std::lock_guard lock(mutex_);
        if (!request_ || !fresh_) return nullptr;
        fresh_ = false;
        if (Outdated(ready_, now_())) return nullptr;
        request_ = false;
        std::swap(shown_, ready_);
    }
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(shown_.arrival - start_);
    frame_ = {.format = shown_.format,
              .bytes = shown_.bytes,
              .time = static_cast<std::uint32_t>(time.count()),
              .first = shown_.connection != shownConnection_};
    shownConnection_ = shown_.connection;
    return &frame_;
}

/// True when a frame was made ready for an expected request that came late, and newer ones, which nobody
/// converted, have arrived since: the next one is the better answer.
bool FrameExchange::Outdated(const Buffer& buffer, Clock::time_point now) const {
    const auto age = now - buffer.arrival;
    const bool newer = arrivals_ > buffer.arrivalNumber;
    return age > LongestWait || (newer && age > 2 * arrivalInterval_ + Tolerance);
}

std::string FrameExchange::Words() const {
    const std::lock_guard lock(mutex_);
    switch (State()) {
        case CaptureState::Disconnected:
            return "not connected";
        case CaptureState::Opening:
            return "connecting";
        case CaptureState::Delivering:
            return "delivering";
        case CaptureState::Waiting:
            return reason_;
    }
    return {};
}

std::string FrameExchange::TakeError() {
    const std::lock_guard lock(mutex_);
    return std::exchange(error_, {});
}

}  // namespace tessaloom
