#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "platform/CaptureSource.h"
#include "support/Testing.h"

namespace tessaloom::testing {

/// Runs one attempt of a source on a thread and catches its frames; every frame is wanted.
class CaughtFrames : public FrameInbox {
public:
    struct Frame {
        CaptureFormat format;
        std::vector<std::uint8_t> rows;

        /// Blue, green and red as 0xRRGGBB, counted from the top left corner; 24 bits.
        int Pixel(int x, int y) const {
            const int stride = (format.width * 3 + 3) & ~3;
            const std::uint8_t* at = rows.data() + (format.height - 1 - y) * stride + 3 * x;
            return at[2] << 16 | at[1] << 8 | at[0];
        }
    };

    ~CaughtFrames() override { End(); }

    void Start(CaptureSource& source) {
        End();
        stopped_ = over_ = waited_ = false;
        frames_.clear();
        thread_ = std::thread([this, &source] {
            std::string why = source.Run(*this);
            Note([&] { reason_ = std::move(why), over_ = true; });
        });
    }

    /// True when `count` more frames came, and before the source ended. The first wait counts from the start,
    /// as the source may be faster than the test.
    bool Wait(std::size_t count) {
        std::unique_lock lock(mutex_);
        const std::size_t wanted = (std::exchange(waited_, true) ? frames_.size() : 0) + count;
        const auto came = [&] { return frames_.size() >= wanted; };
        return changed_.wait_for(lock, Patience, [&] { return came() || over_; }) && came();
    }

    /// Why the source ended by itself; "" when it did not.
    std::string Reason() {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, Patience, [&] { return over_; });
        return over_ ? reason_ : "";
    }

    /// Tells the source to end and waits for that.
    void End() {
        Note([this] { stopped_ = true; });
        if (thread_.joinable()) thread_.join();
    }

    /// All since the start.
    std::vector<Frame> All() {
        const std::lock_guard lock(mutex_);
        return frames_;
    }
    Frame Last() {
        const std::lock_guard lock(mutex_);
        return frames_.empty() ? Frame() : frames_.back();
    }

    bool Stopped() const override {
        const std::lock_guard lock(mutex_);
        return stopped_;
    }
    bool Arrived() override { return true; }
    std::span<std::uint8_t> Begin(CaptureFormat format) override {
        if (!Accepts(format.width, format.height)) return {};
        format.sizeImage = ((format.width * format.bitCount / 8 + 3) & ~3) * format.height;
        filling_ = {format, std::vector<std::uint8_t>(static_cast<std::size_t>(format.sizeImage))};
        return filling_.rows;
    }
    void Commit() override {
        Note([this] { frames_.push_back(std::move(filling_)); });
    }
    bool Accepts(int width, int height) override {
        return width > 0 && height > 0 && width <= CaptureFormat::MaxSide && height <= CaptureFormat::MaxSide;
    }

private:
    static constexpr std::chrono::seconds Patience{30};

    void Note(const std::function<void()>& change) {
        const std::lock_guard lock(mutex_);
        change();
        changed_.notify_all();
    }

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    Frame filling_;
    std::vector<Frame> frames_;
    bool stopped_ = false, over_ = false, waited_ = false;
    std::string reason_;
    std::thread thread_;
};

}  // namespace tessaloom::testing
