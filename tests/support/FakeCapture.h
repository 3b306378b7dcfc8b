#pragma once

#include "platform/CaptureDriver.h"
#include "support/Testing.h"

namespace tessaloom::testing {

/// Cameras that deliver when a test says so.
class FakeCapture : public CaptureDrivers {
public:
    class Window;

    std::vector<std::string> cameras;  ///< Bare names; `Find` adds those it does not know.
    bool supported = true;             ///< False: windows cannot be made.
    int failedConnects = 0;            ///< So many of the next attempts to connect fail.
    CaptureCapabilities capabilities;
    std::vector<std::string> calls;  ///< What was called on windows, "connect 0", "grab" ...
    std::vector<Window*> windows;    ///< Those that live, in the order of their making.

    std::unique_ptr<CaptureWindow> capCreateCaptureWindow(std::string_view) override {
        return supported ? std::make_unique<Window>(*this) : nullptr;
    }
    std::optional<std::string> capGetDriverDescription(int driver) const override {
        if (driver < 0 || driver >= static_cast<int>(cameras.size())) return std::nullopt;
        return cameras[static_cast<std::size_t>(driver)];
    }
    void Refresh() override {}
    int Find(std::string_view name) override {
        if (name.empty()) return -1;
        for (int driver = 0; driver < static_cast<int>(cameras.size()); ++driver)
            if (NumberedDriverName(*this, driver) == name) return driver;
        cameras.emplace_back(name);
        return static_cast<int>(cameras.size()) - 1;
    }

    class Window : public CaptureWindow {
    public:
        explicit Window(FakeCapture& owner) : owner_(owner) { owner_.windows.push_back(this); }
        ~Window() override { std::erase(owner_.windows, this); }

        CaptureStatus status;
        int driver = -1;
        bool grabbed = false;  ///< A grab is outstanding.

        /// The next frame: a grab that is outstanding gets it in the next `Poll`, else the next grab does.
        void Offer(const CaptureFormat& format, std::vector<std::uint8_t> bytes,
                   std::uint32_t flags = FrameHeader::Done) {
            ready_ = Frame{format, std::move(bytes), flags};
        }
        /// The same of one colour in all bytes, 24 bits.
        void OfferPlain(int width, int height, std::uint8_t value, std::uint32_t flags = FrameHeader::Done) {
            const int bytes = ((width * 3 + 3) & ~3) * height;
            Offer({.width = width, .height = height, .sizeImage = bytes},
                  std::vector<std::uint8_t>(static_cast<std::size_t>(bytes), value), flags);
        }
        void Fail(int id, std::string_view text) {
            if (onError_) onError_(id, text);
        }

        void capSetCallbackOnFrame(OnFrame callback) override { onFrame_ = std::move(callback); }
        void capSetCallbackOnError(OnError callback) override { onError_ = std::move(callback); }
        bool capDriverConnect(int index) override {
            owner_.calls.push_back("connect " + std::to_string(index));
            if (owner_.failedConnects > 0) return --owner_.failedConnects, false;
            if (!owner_.capGetDriverDescription(index)) return false;
            driver = index;
            status = {.state = CaptureState::Delivering};
            return true;
        }
        bool capDriverDisconnect() override {
            owner_.calls.emplace_back("disconnect");
            status = {};
            return std::exchange(driver, -1) >= 0;
        }
        CaptureCapabilities capDriverGetCaps() const override { return owner_.capabilities; }
        bool capGetVideoFormat(CaptureFormat& format) const override {
            if (format_) format = *format_;
            return format_.has_value();
        }
        void capPreview(bool on) override { owner_.calls.emplace_back(on ? "preview on" : "preview off"); }
        CaptureStatus capGetStatus() const override { return status; }
        CaptureState State() const override { return status.state; }
        int Failures() const override { return status.failures; }
        bool capGrabFrame() override {
            owner_.calls.emplace_back("grab");
            if (driver < 0) return false;
            grabbed = true;
            Poll();
            return true;
        }
        void Poll() override {
            if (!grabbed || !ready_) return;
            grabbed = false;
            const Frame frame = std::move(*ready_);
            ready_.reset();
            format_ = frame.format;
            if (onFrame_)
                onFrame_({.data = frame.bytes, .bytesUsed = frame.bytes.size(), .flags = frame.flags});
        }
        bool capDlgVideoSource() override { return Dialog("source"); }
        bool capDlgVideoFormat() override { return Dialog("format"); }
        bool capDlgVideoDisplay() override { return Dialog("display"); }

    private:
        struct Frame {
            CaptureFormat format;
            std::vector<std::uint8_t> bytes;
            std::uint32_t flags;
        };
        bool Dialog(std::string name) {
            owner_.calls.push_back(std::move(name));
            return true;
        }

        FakeCapture& owner_;
        OnFrame onFrame_;
        OnError onError_;
        std::optional<Frame> ready_;
        std::optional<CaptureFormat> format_;
    };
};

}  // namespace tessaloom::testing
