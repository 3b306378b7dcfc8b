#include "video/VideoFeed.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include "core/ErrorReport.h"
#include "core/Log.h"
#include "core/RunFlags.h"
#include "core/modNumbers.h"
#include "imaging/IJL.h"
#include "imaging/pixelops/Tessaloom.h"
#include "platform/Dialogs.h"
#include "platform/MainWindow.h"
#include "platform/TextEncoding.h"
#include "platform/Timer.h"
#include "time/modTime.h"

namespace tessaloom {
namespace {

constexpr std::string_view Module = "VideoFeed.cls";
constexpr std::string_view WindowName = "VB CAP WINDOW";
constexpr std::string_view ErrorTitle = "Error";
constexpr std::string_view CouldNotConnect = "Error:  Could not connect to capture device.";
constexpr std::string_view NoCaptureSupport =
    "Error:  Could not create capture window.  This is not dependent on the video source, but on the "
    "underlying OS support for Video-for-Windows.  Exiting Program.";

/// Seconds after which a grab that brought no frame is given up.
constexpr double GrabPatience = 5;

constexpr int HighestFrame = 10'000'000;
constexpr std::size_t LongestErrorText = 255;  // characters

/// The whole seconds of a moment, which is exact to about a microsecond.
double WholeSecond(double moment) { return std::floor(moment * modTime::SecondsPerDay + 1e-6); }

/// Bytes of a frame at one and a half bytes per pixel, rows padded to 4 bytes.
std::int64_t TwelveBitSize(int width, int height) {
    return ((std::int64_t{width} * 3 / 2 + 3) & ~std::int64_t{3}) * height;
}

/// The first `LongestErrorText` characters, at most up to the first NUL.
std::string_view CutErrorText(std::string_view text) {
    return FirstCharacters(text.substr(0, text.find('\0')), LongestErrorText);
}

}  // namespace

VideoFeed::VideoFeed(SettingsOwner& owner, const PresentTime& present, const Tools& tools)
    : OwnedSettings(owner),
      present_(present),
      tools_(tools),
      motionDetect_(owner, {tools.files, tools.jpeg, tools.desktop}) {}

VideoFeed::~VideoFeed() = default;

// --- Opening and closing ---

void VideoFeed::OpenFeed() {
    if (delivering_) return Reopen();
    Trap({Module, "OpenFeed"}, [&] {
        CloseFeed();
        FindInput();
        window_ = tools_.drivers ? tools_.drivers->capCreateCaptureWindow(WindowName) : nullptr;
        if (!window_) {
            tools_.timer.Post([&dialogs = tools_.dialogs] {
                dialogs.MessageBox(NoCaptureSupport, ErrorTitle);
                Flags().running = false;
            });
            return;
        }
        if (vfwInput_ == NoInput) {
            window_.reset();
        } else if (!ConnectDriver()) {
            ShowBox(std::string(CouldNotConnect), ErrorTitle);
            CloseFeed();
        } else {
            window_->capSetCallbackOnFrame([this](const FrameHeader& frame) { FrameCallback(frame); });
            window_->capSetCallbackOnError(
                [this](int id, std::string_view text) { ErrorCallback(id, text); });
            firstAttempt_ = true;
            if (rate_ != 0) nextTime_ = modTime::Clock();
        }
    });
}

/// The index is looked for by the name that the file holds; only where there is none does the index count.
void VideoFeed::FindInput() {
    if (feedName_.empty()) {
        Set(feedName_, GetFeedName());
        return;
    }
    const int driver = tools_.drivers ? tools_.drivers->Find(feedName_) : NoInput;
    vfwInput_ = driver < 0 || driver > LastInput ? NoInput : driver;
    if (driver > LastInput)
        Log(LogLevel::Warning, "There are more than " + std::to_string(CaptureDrivers::Reachable) +
                                   " video sources; " + feedName_ + " is not captured");
}

bool VideoFeed::ConnectDriver() {
    return Trap({Module, "ConnectDriver"}, [&] {
        window_->capSetCallbackOnError(nullptr);
        window_->capDriverDisconnect();
        if (!window_->capDriverConnect(vfwInput_) && !window_->capDriverConnect(vfwInput_)) return false;
        capabilities_ = window_->capDriverGetCaps();
        window_->capPreview(false);
        return true;
    });
}

void VideoFeed::CloseFeed() {
    if (delivering_) return Reopen();
    Trap({Module, "CloseFeed"}, [&] {
        if (window_) {
            window_->capSetCallbackOnFrame(nullptr);
            window_->capSetCallbackOnError(nullptr);
            window_->capDriverDisconnect();
            window_.reset();
        }
        stale_ = false;
        firstAttempt_ = false;
        resetFrame_ = true;
        capabilities_ = {};
        lastFrameTime_ = 0;
        fps_ = 0;
        framesThisSecond_ = 0;
        motionDetect_.ForgetPrevious();
    });
}

void VideoFeed::VideoFeedUnload() {
    Trap({Module, "VideoFeedUnload"}, [&] {
        CloseFeed();
        frames_.Clear();
        preview_.UnloadClass();
    });
}

std::string VideoFeed::GetFeedName() const {
    return Trap({Module, "GetFeedName"},
                [&] { return tools_.drivers ? NumberedDriverName(*tools_.drivers, vfwInput_) : ""; });
}

void VideoFeed::ShowSourceDialog() {
    Trap({Module, "ShowSourceDialog"}, [&] { return window_ && window_->capDlgVideoSource(); });
}

void VideoFeed::ShowFormatDialog() {
    Trap({Module, "ShowFormatDialog"}, [&] { return window_ && window_->capDlgVideoFormat(); });
}

void VideoFeed::ShowDisplayDialog() {
    Trap({Module, "ShowDisplayDialog"}, [&] { return window_ && window_->capDlgVideoDisplay(); });
}

// --- Asking for frames ---

void VideoFeed::Update() {
    if (delivering_) return;
    if (!enabled_) {
        if (window_) CloseFeed();
        stale_ = true;
        return;
    }
    if (stale_) OpenFeed();
    if (!window_) return;
    Trap({Module, "Update"}, [&] {
        window_->Poll();
        WatchFirstAttempt();
        Request();
    });
}

/// The source is reached, lost and reached again without us; only if it cannot be reached at first is that
/// worth a box.
void VideoFeed::WatchFirstAttempt() {
    if (!firstAttempt_) return;
    const bool failed = window_->Failures() > 0;
    firstAttempt_ = !Valid() && !failed;
    if (Valid() || !failed) return;
    ShowBox(std::string(CouldNotConnect), ErrorTitle);
}

void VideoFeed::Request() {
    const double now = present_.Now();
    const bool abandoned = (now - nextTime_) * modTime::SecondsPerDay > GrabPatience;
    if (!abandoned && (now < nextTime_ || !resetFrame_)) return;
    resetFrame_ = false;
    window_->capGrabFrame();
}

void VideoFeed::RestartTimes() {
    nextTime_ = present_.Now();
    lastFrameTime_ = 0;
    motionDetect_.ForgetPrevious();
}

// --- What the driver calls ---

void VideoFeed::FrameCallback(const FrameHeader& header) {
    const FrameHeader frame = header;
    delivering_ = true;
    Trap({Module, "FrameCallback"}, [&] {
        resetFrame_ = true;
        firstAttempt_ = false;
        CountFrame();
        CaptureFormat format;
        const bool usable = frame.bytesUsed != 0 && frame.bytesUsed <= frame.data.size() && window_ &&
                            window_->capGetVideoFormat(format);
        if (!usable || !TakeSize(format)) return;
        MeasureDepth(frame.bytesUsed);
        if (showDebugInfo_) ShowFrameInfo(frame, format);
        if (!TakePixels(frame)) return;
        newDIB_ = newPreviewDIB_ = true;
        DetectMotion((frame.flags & FrameHeader::First) != 0);
        if (showPreview_) DrawPreview();
        frame_ = frame_ >= HighestFrame ? 0 : frame_ + 1;
    });
    delivering_ = false;
}

/// A feed that is late does not try to catch up.
void VideoFeed::CountFrame() {
    const double now = present_.Now();
    if (rate_ != 0) nextTime_ = std::max(nextTime_ + 1 / rate_ / modTime::SecondsPerDay, now);
    if (WholeSecond(lastFrameTime_) != WholeSecond(now))
        fps_ = static_cast<float>(std::exchange(framesThisSecond_, 0));
    ++framesThisSecond_;
    lastFrameInterval_ = lastFrameTime_ == 0 ? 0 : now - lastFrameTime_;
    lastFrameTime_ = now;
}

bool VideoFeed::TakeSize(const CaptureFormat& format) {
    constexpr Range<int> Sides{1, CaptureFormat::MaxSide};
    if (format.width != Clamped(format.width, Sides) || format.height != Clamped(format.height, Sides))
        return false;
    width_ = format.width;
    height_ = format.height;
    return true;
}

/// The first size that matches decides; of a frame of one pixel, several do.
void VideoFeed::MeasureDepth(std::size_t bytesUsed) {
    const auto used = static_cast<std::int64_t>(bytesUsed);
    if (used == PaddedSize(width_, height_, 3))
        depth_ = 3;
    else if (used == PaddedSize(width_, height_, 2))
        depth_ = 2;
    else if (used == TwelveBitSize(width_, height_))
        depth_ = 1.5;
    else
        depth_ = static_cast<double>(used) / (std::int64_t{width_} * height_);
    bpp_ = static_cast<float>(depth_ * 8);
}

void VideoFeed::ShowFrameInfo(const FrameHeader& frame, const CaptureFormat& format) {
    showDebugInfo_ = false;
    const CaptureStatus status = window_->capGetStatus();
    // clang-format off
    const std::pair<std::string_view, double> lines[] = {
        {"Frame Header Length = ", FrameHeader::Length},
        {"Buffer Length = ",       static_cast<double>(frame.data.size())},
        {"Bytes Used = ",          static_cast<double>(frame.bytesUsed)},
        {"Flags = ",               frame.flags},
        {"Padded Size = ",         PaddedSize(width_, height_, 3)},
        {"BPP = ",                 bpp_},
        {"Status Width = ",        status.width},
        {"Status Height = ",       status.height},
        {"Bit Count = ",           format.bitCount},
        {"Color Important = ",     format.colorImportant},
        {"Color Used = ",          format.colorUsed},
        {"Compression = ",         format.compression},
        {"Height = ",              format.height},
        {"Planes = ",              format.planes},
        {"Size = ",                CaptureFormat::Size},
        {"Size Image = ",          format.sizeImage},
        {"Width = ",               format.width},
    };
    // clang-format on
    std::string text = "Frame Info:";
    for (const auto& [label, value] : lines)
        text.append("\n").append(label).append(modNumbers::CStrNI(value));
    ShowBox(std::move(text), "Tessaloom");
}

/// The one copy of a frame on its way to the canvas: the driver's buffer is its own.
bool VideoFeed::TakePixels(const FrameHeader& frame) {
    if (depth_ != 3 && depth_ != 2) return false;
    const std::shared_ptr<tessaloom::DIB> next = frames_.Next(width_, height_);
    if (!next || frame.bytesUsed > next->SizeInBytes()) return false;
    std::memcpy(next->DIBPtr(), frame.data.data(), frame.bytesUsed);
    if (depth_ == 2) {
        bpp_ = 15;
        DIB1624(next->DIBPtr(), width_, height_);
    }
    frames_.SetLatest(next);
    return true;
}

void VideoFeed::DetectMotion(bool first) {
    if (first) motionDetect_.ForgetPrevious();
    if (!motionDetect_.Enabled()) return;
    motionDetect_.SetLastFrameInterval(lastFrameInterval_);
    const std::shared_ptr<const tessaloom::DIB> frame = Frame();  // a script's hook may unload the feed
    motionDetect_.DiffFrames(*frame);
}

void VideoFeed::DrawPreview() {
    const PreviewSize size = tools_.mainWindow.Preview();
    const tessaloom::DIB& frame = DIB();
    if (size.width < 1 || size.height < 1 || !frame.hDC()) return;
    preview_.SetWidthHeight(size.width, size.height);
    if (!preview_.DIBPtr()) return;
    preview_.hDC()->SetStretchBltMode(StretchMode::Halftone);
    preview_.hDC()->StretchBlt(0, 0, size.width, size.height, *frame.hDC(), 0, 0, frame.Width(),
                               frame.Height());
    tools_.mainWindow.DrawPreview(preview_.DIBPtr(), size);
}

void VideoFeed::ErrorCallback(int id, std::string_view text) {
    Trap({Module, "ErrorCallback"}, [&] {
        if (id == 0) return;
        tools_.timer.Post([&dialogs = tools_.dialogs, shown = std::string(CutErrorText(text))] {
            dialogs.MessageBox(shown, "Video Feed Error Message", Buttons::OkCancel);
        });
    });
}

void VideoFeed::ShowBox(std::string text, std::string_view title) {
    tools_.timer.Post([&dialogs = tools_.dialogs, text = std::move(text), title = std::string(title)] {
        dialogs.MessageBox(text, title);
    });
}

// --- Properties ---

void VideoFeed::SetVfWInput(int driver) {
    driver = Clamped(driver, {NoInput, LastInput});
    if (driver == vfwInput_) return;
    vfwInput_ = driver;
    Set(feedName_, GetFeedName());
    Reopen();
}

void VideoFeed::SetFeedName(std::string_view name) {
    if (!Store(feedName_, std::string(name))) return;
    vfwInput_ = NoInput;
    owner_.SettingChanged();
    Reopen();
}

void VideoFeed::SetRate(double framesPerSecond) {
    Set(rate_, framesPerSecond, {SlowestRate, std::numeric_limits<double>::max()});
}

}  // namespace tessaloom
