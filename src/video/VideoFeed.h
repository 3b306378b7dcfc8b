#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "core/OwnedSettings.h"
#include "imaging/DIB.h"
#include "platform/CaptureDriver.h"
#include "time/PresentTime.h"
#include "video/FramePool.h"
#include "video/MotionDetect.h"

namespace tessaloom {

class Dialogs;
class MainWindow;
class Timer;

/// One live picture source of the portfolio, slot 0 .. 9: asks its capture driver for frames at its own rate,
/// turns them into 24-bit pictures and gives them to its motion detector.
///
/// Owned by the portfolio. Moments are local day numbers (time/modTime.h). The driver is known by its name,
/// as indexes shift when cameras come and go. While the source cannot be reached the driver tries again by
/// itself; whoever shows the feed keeps the picture it had.
class VideoFeed : private OwnedSettings {
public:
    /// What a feed works with; all outlive it.
    struct Tools {
        CaptureDrivers* drivers;  ///< Null: there is no capture support at all.
        FileSystem& files;
        JpegCodec& jpeg;
        Desktop& desktop;
        Dialogs& dialogs;
        MainWindow& mainWindow;
        Timer& timer;  ///< Boxes are shown between ticks, so that nobody's answer is waited for in one.
    };

    VideoFeed(SettingsOwner& owner, const PresentTime& present, const Tools& tools);
    ~VideoFeed();
    VideoFeed(const VideoFeed&) = delete;
    VideoFeed& operator=(const VideoFeed&) = delete;

    static constexpr int NoInput = -1;
    static constexpr int LastInput = CaptureDrivers::Reachable - 1;
    static constexpr double SlowestRate = 1.0 / 60;

    /// One tick: opens the feed when it is enabled, or its setup changed, closes it when it is not, and asks
    /// for a frame when one is due. A frame that is there is taken in before this returns.
    void Update();

    /// (Re)opens the feed. What goes wrong is shown in a box. Frames from before are not compared with those
    /// to come.
    void OpenFeed();

    /// Ends delivery: not valid any more, no grab outstanding. The last frame stays.
    void CloseFeed();

    /// Has the next `Update` open the feed anew.
    void Reopen() { stale_ = true; }

    /// Closes the feed and releases what it holds.
    void VideoFeedUnload();

    /// The display name of driver `VfWInput`: its description, with its place before it where several bear
    /// the same. "" without such a driver.
    std::string GetFeedName() const;

    /// The driver's own dialogs, where it has them.
    void ShowSourceDialog();
    void ShowFormatDialog();
    void ShowDisplayDialog();

    /// For a clock that was set back: the next frame is due now, and the last one's time means nothing.
    void RestartTimes();

    // What the driver calls

    void FrameCallback(const FrameHeader& frame);
    void ErrorCallback(int id, std::string_view text);

    // Properties

    /// The feed is captured.
    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled) { Set(enabled_, enabled); }

    /// The capture driver, 0 .. 9; -1: none chosen. Choosing one takes over its name.
    int VfWInput() const { return vfwInput_; }
    void SetVfWInput(int driver);

    /// The display name of the driver, or the address of a stream, which the file holds to find the same
    /// source again.
    const std::string& FeedName() const { return feedName_; }
    void SetFeedName(std::string_view name);

    /// Frames per second asked for; the least is one frame a minute.
    double Rate() const { return rate_; }
    void SetRate(double framesPerSecond);

    /// When the next frame is due, when the last one was taken (moments), and the days between the last two.
    double NextTime() const { return nextTime_; }
    void SetNextTime(double moment) { nextTime_ = moment; }
    double LastFrameTime() const { return lastFrameTime_; }
    double LastFrameInterval() const { return lastFrameInterval_; }

    /// Frames delivered during the last whole second in which any came.
    float FPS() const { return fps_; }

    /// Bits per pixel of the driver's frames; 15 for those of 16 bits. Only 24 and 15 are shown.
    float BPP() const { return bpp_; }

    /// The size of the driver's frames in pixels; 0 before the first one.
    int Width() const { return width_; }
    int Height() const { return height_; }

    /// The last frame; empty (no pixels) before the first one.
    const tessaloom::DIB& DIB() const { return frames_.Latest() ? *frames_.Latest() : none_; }

    /// The same, to be kept: it never changes again. Null before the first one.
    std::shared_ptr<const tessaloom::DIB> Frame() const { return frames_.Latest(); }

    /// A new frame has come since the reader last cleared the flag.
    bool NewDIB() const { return newDIB_; }
    void SetNewDIB(bool fresh) { newDIB_ = fresh; }
    bool NewPreviewDIB() const { return newPreviewDIB_; }
    void SetNewPreviewDIB(bool fresh) { newPreviewDIB_ = fresh; }

    /// Counts the frames put into `DIB`, from 0 again after 10,000,000.
    int FRAME() const { return frame_; }

    /// No grab is outstanding.
    bool ResetFrame() const { return resetFrame_; }
    void SetResetFrame(bool reset) { resetFrame_ = reset; }

    /// The driver is connected and frames come.
    bool Valid() const { return window_ && window_->State() == CaptureState::Delivering; }

    /// What the source is doing, for people; "" while the feed is closed.
    std::string Status() const { return window_ ? window_->capGetStatus().text : std::string(); }

    /// Which dialogs of its own the driver offers.
    bool HasSource() const { return capabilities_.hasDlgVideoSource; }
    bool HasFormat() const { return capabilities_.hasDlgVideoFormat; }
    bool HasDisplay() const { return capabilities_.hasDlgVideoDisplay; }

    /// The live preview is shown in the main window. The other two are no settings of the file: preview in
    /// the setup window, and show once what the next frame looks like.
    bool ShowPreview() const { return showPreview_; }
    void SetShowPreview(bool show) { Set(showPreview_, show); }
    bool ShowPreviewInSetup() const { return showPreviewInSetup_; }
    void SetShowPreviewInSetup(bool show) { showPreviewInSetup_ = show; }
    bool ShowDebugInfo() const { return showDebugInfo_; }
    void SetShowDebugInfo(bool show) { showDebugInfo_ = show; }

    tessaloom::MotionDetect& MotionDetect() { return motionDetect_; }
    const tessaloom::MotionDetect& MotionDetect() const { return motionDetect_; }

private:
    bool ConnectDriver();
    void FindInput();
    void WatchFirstAttempt();
    void Request();

    void CountFrame();
    bool TakeSize(const CaptureFormat& format);
    void MeasureDepth(std::size_t bytesUsed);
    void ShowFrameInfo(const FrameHeader& frame, const CaptureFormat& format);
    bool TakePixels(const FrameHeader& frame);
    void DetectMotion(bool first);
    void DrawPreview();

    void ShowBox(std::string text, std::string_view title);

    const PresentTime& present_;
    Tools tools_;
    tessaloom::MotionDetect motionDetect_;
    FramePool frames_;
    tessaloom::DIB none_;
    tessaloom::DIB preview_;                 ///< The last frame in the size of the preview box.
    std::unique_ptr<CaptureWindow> window_;  ///< hCapWnd
    CaptureCapabilities capabilities_;
    std::string feedName_;
    double rate_ = 30;
    double nextTime_ = 0;
    double lastFrameTime_ = 0;
    double lastFrameInterval_ = 0;
    double depth_ = 0;  ///< Bytes per pixel of the frame in hand.
    float fps_ = 0;
    float bpp_ = 0;
    int framesThisSecond_ = 0;
    int vfwInput_ = NoInput;
    int width_ = 0;
    int height_ = 0;
    int frame_ = 0;
    bool enabled_ = false;
    bool stale_ = true;          ///< To be opened by the next `Update`, if enabled.
    bool delivering_ = false;    ///< The driver is calling: the window may not be destroyed.
    bool firstAttempt_ = false;  ///< It is not known yet how the first attempt to connect ends.
    bool newDIB_ = false;
    bool newPreviewDIB_ = false;
    bool resetFrame_ = true;
    bool showPreview_ = false;
    bool showPreviewInSetup_ = false;
    bool showDebugInfo_ = false;
};

}  // namespace tessaloom
