#include "platform/capture/CaptureList.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/Ascii.h"
#include "platform/capture/FrameExchange.h"
#include "platform/capture/PatternChannel.h"

namespace tessaloom {

namespace {

constexpr std::string_view PatternScheme = "test:";

/// A camera may be named by its device file, too.
constexpr std::string_view CameraPath = "/dev/v";

/// What stands before the first of equal names.
constexpr std::string_view FirstOfEqual = "(1) ";

/// The error number of what no reopening repairs.
constexpr int SourceError = 1;

/// Certainly no camera: an absolute path, or a scheme of at least two letters (one would be a drive). Some
/// cameras have a colon in their names, and a blank behind it.
bool IsAddress(std::string_view name) {
    if (name.starts_with('/') || name.starts_with('\\') || name.substr(1).starts_with(":\\")) return true;
    const std::size_t colon = name.find(':');
    return colon != std::string_view::npos && colon >= 2 && !name.substr(colon + 1).starts_with(' ') &&
           std::all_of(name.begin(), name.begin() + static_cast<std::ptrdiff_t>(colon), ascii::IsLetter);
}

/// Whatever bears a name that is no address just now: a file, else a camera.
class NamedSource final : public CaptureSource {
public:
    NamedSource(const std::string& name, std::unique_ptr<CaptureSource> file,
                std::unique_ptr<CaptureSource> camera)
        : path_(name), file_(std::move(file)), camera_(std::move(camera)) {
        std::ranges::replace(path_, '\\', '/');
    }

    std::string Run(FrameInbox& inbox) override {
        std::error_code error;
        const auto kind = std::filesystem::status(path_, error).type();
        const bool file = kind == std::filesystem::file_type::regular;
        return (file ? file_ : camera_)->Run(inbox);
    }

private:
    std::string path_;
    std::unique_ptr<CaptureSource> file_, camera_;
};

/// A source with a thread of its own.
class ThreadChannel final : public CaptureChannel {
public:
    explicit ThreadChannel(std::shared_ptr<FrameExchange> exchange) : exchange_(std::move(exchange)) {}
    ~ThreadChannel() override { exchange_->Stop(); }
    ThreadChannel(const ThreadChannel&) = delete;
    ThreadChannel& operator=(const ThreadChannel&) = delete;

    void Request() override { exchange_->Request(); }
    const CapturedFrame* Take() override { return exchange_->Take(); }
    CaptureState State() const override { return exchange_->State(); }
    int Failures() const override { return exchange_->Failures(); }
    std::string Words() const override { return exchange_->Words(); }
    std::string TakeError() override { return exchange_->TakeError(); }

private:
    std::shared_ptr<FrameExchange> exchange_;
};

/// An address that can never deliver, such as a test pattern of an impossible size.
class DeadChannel final : public CaptureChannel {
public:
    void Request() override {}
    const CapturedFrame* Take() override { return nullptr; }
    CaptureState State() const override { return CaptureState::Waiting; }
    int Failures() const override { return 1; }
    std::string Words() const override { return "there is no such test pattern"; }
};

}  // namespace

class CaptureList::Window final : public CaptureWindow {
public:
    explicit Window(CaptureList& list) : list_(list) { list_.windows_.push_back(this); }
    ~Window() override { std::erase(list_.windows_, this); }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /// Of the connected driver, with its number; "" without one.
    const std::string& Name() const { return name_; }

    void capSetCallbackOnFrame(OnFrame callback) override { onFrame_ = std::move(callback); }
    void capSetCallbackOnError(OnError callback) override { onError_ = std::move(callback); }

    bool capDriverConnect(int driver) override {
        capDriverDisconnect();
        if (driver < 0 || driver >= Reachable || !list_.capGetDriverDescription(driver)) return false;
        name_ = NumberedDriverName(list_, driver);
        channel_ = list_.Open(name_);
        state_ = CaptureState::Opening;
        return true;
    }
    bool capDriverDisconnect() override {
        const bool connected = channel_ != nullptr;
        channel_.reset();
        name_.clear();
        format_.reset();
        outstanding_ = false;
        state_ = CaptureState::Disconnected;
        return connected;
    }

    CaptureCapabilities capDriverGetCaps() const override { return {}; }
    bool capGetVideoFormat(CaptureFormat& format) const override {
        if (format_) format = *format_;
        return format_.has_value();
    }
    void capPreview(bool) override {}
    CaptureStatus capGetStatus() const override {
        CaptureStatus status{.state = State(), .failures = Failures()};
        if (format_) {
            status.width = format_->width;
            status.height = format_->height;
        }
        status.text = channel_ ? channel_->Words() : "not connected";
        return status;
    }
    CaptureState State() const override { return channel_ ? channel_->State() : CaptureState::Disconnected; }
    int Failures() const override { return channel_ ? channel_->Failures() : 0; }

    bool capGrabFrame() override {
        if (!channel_) return false;
        channel_->Request();
        outstanding_ = true;
        Poll();
        return true;
    }

    void Poll() override {
        if (!channel_) return;
        if (outstanding_) Deliver();
        // The callback may have disconnected.
        if (channel_ && channel_->State() != state_) Tell();
    }

    bool capDlgVideoSource() override { return false; }
    bool capDlgVideoFormat() override { return false; }
    bool capDlgVideoDisplay() override { return false; }

private:
    void Deliver() {
        const CapturedFrame* frame = channel_->Take();
        if (!frame) return;
        outstanding_ = false;
        format_ = frame->format;
        const std::uint32_t flags = FrameHeader::Done | (frame->first ? FrameHeader::First : 0);
        if (onFrame_) onFrame_({frame->bytes, frame->bytes.size(), frame->time, flags});
    }

    /// The state has changed.
    void Tell() {
        state_ = channel_->State();
        if (list_.log_) list_.log_("Video from " + name_ + ": " + channel_->Words());
        const std::string error = channel_->TakeError();
        if (!error.empty() && onError_) onError_(SourceError, error);
    }

    CaptureList& list_;
    OnFrame onFrame_;
    OnError onError_;
    std::string name_;
    std::unique_ptr<CaptureChannel> channel_;
    std::optional<CaptureFormat> format_;
    CaptureState state_ = CaptureState::Disconnected;  ///< As last told to the log.
    bool outstanding_ = false;
};

CaptureList::CaptureList(CaptureSources& cameras, CaptureSources& streams, LogLine log)
    : cameras_(cameras), streams_(streams), log_(std::move(log)) {
    Arrange();
}

CaptureList::~CaptureList() = default;

std::unique_ptr<CaptureWindow> CaptureList::capCreateCaptureWindow(std::string_view) {
    return std::make_unique<Window>(*this);
}

std::optional<std::string> CaptureList::capGetDriverDescription(int driver) const {
    if (driver < 0 || driver >= static_cast<int>(list_.size())) return std::nullopt;
    return list_[static_cast<std::size_t>(driver)];
}

void CaptureList::Refresh() {
    looked_ = true;
    present_ = cameras_.List();
    std::erase_if(asked_, [this](const Asked& asked) { return !InUse(asked.name); });
    Arrange();
    // A camera that was waited for may be there by now.
    std::erase_if(asked_, [this](const Asked& asked) {
        return !asked.address && Place(asked.name) < static_cast<int>(present_.size());
    });
    Arrange();
}

int CaptureList::Find(std::string_view name) {
    if (name.empty()) return -1;
    if (!looked_) Refresh();
    if (Place(name) < 0) {
        asked_.push_back({std::string(name), IsAddress(name)});
        Arrange();
    }
    if (Place(name) >= Reachable) {
        // What earlier portfolios asked for makes room.
        std::erase_if(asked_, [&](const Asked& asked) { return asked.name != name && !InUse(asked.name); });
        Arrange();
    }
    return Place(name);
}

/// A name that was remembered while there were more, or fewer, equal cameras than now means the first of
/// them.
int CaptureList::Place(std::string_view name) const {
    const auto first = [this](const auto& bears) {
        for (int driver = 0; driver < static_cast<int>(list_.size()); ++driver)
            if (bears(driver)) return driver;
        return -1;
    };
    const int exact = first([&](int driver) { return NumberedDriverName(*this, driver) == name; });
    if (exact >= 0) return exact;
    if (name.starts_with(FirstOfEqual)) name.remove_prefix(FirstOfEqual.size());
    return first([&](int driver) { return list_[static_cast<std::size_t>(driver)] == name; });
}

bool CaptureList::InUse(const std::string& name) const {
    return std::ranges::any_of(windows_, [&](const Window* window) { return window->Name() == name; });
}

void CaptureList::Arrange() {
    list_ = present_;
    for (const bool addresses : {false, true})
        for (const Asked& asked : asked_)
            if (asked.address == addresses) list_.push_back(asked.name);
    list_.emplace_back(TestPattern);
}

std::unique_ptr<CaptureChannel> CaptureList::Open(const std::string& name) {
    if (name == TestPattern) return std::make_unique<PatternChannel>(tessaloom::TestPattern::Format());
    if (name.starts_with(PatternScheme)) {
        const auto format = tessaloom::TestPattern::Format::Parse(name.substr(PatternScheme.size()));
        if (!format) return std::make_unique<DeadChannel>();
        return std::make_unique<PatternChannel>(*format);
    }
    auto exchange = std::make_shared<FrameExchange>();
    threads_.Start(exchange, Source(name));
    return std::make_unique<ThreadChannel>(exchange);
}

std::unique_ptr<CaptureSource> CaptureList::Source(const std::string& name) {
    const bool present = Place(name) < static_cast<int>(present_.size());
    if (present || name.starts_with(CameraPath)) return cameras_.Make(name);
    if (IsAddress(name)) return streams_.Make(name);
    return std::make_unique<NamedSource>(name, streams_.Make(name), cameras_.Make(name));
}

}  // namespace tessaloom
