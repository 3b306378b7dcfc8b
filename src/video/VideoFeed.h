#pragma once

#include <string>
#include <string_view>

#include "core/SettingsOwner.h"
#include "imaging/DIB.h"
#include "video/MotionDetect.h"

namespace tessaloom {

/// One live picture source of the portfolio, slot 0 .. 9: its settings, its last frame and its motion
/// detector.
///
/// Owned by the portfolio. No capture driver is attached to it: an enabled feed stays not `Valid`, `DIB`
/// keeps no picture, and whoever shows the feed keeps the picture it had.
class VideoFeed {
public:
    explicit VideoFeed(SettingsOwner& owner) : owner_(owner), motionDetect_(owner) {}

    static constexpr int NoInput = -1;
    static constexpr double SlowestRate = 1.0 / 60;

    /// Ends delivery: not valid any more, no grab outstanding. The last frame stays.
    void CloseFeed();

    /// Closes the feed and releases its picture.
    void VideoFeedUnload();

    /// The feed is captured.
    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled) { Set(enabled_, enabled); }

    /// The capture driver, 0 .. 9; -1: none chosen.
    int VfWInput() const { return vfwInput_; }
    void SetVfWInput(int driver) { vfwInput_ = Clamped(driver, {NoInput, 9}); }

    /// The display name of the driver, which the file holds to find the same driver again.
    const std::string& FeedName() const { return feedName_; }
    void SetFeedName(std::string_view name) { Set(feedName_, std::string(name)); }

    /// Frames per second asked for; the least is one frame a minute.
    double Rate() const { return rate_; }
    void SetRate(double framesPerSecond);

    /// When the next frame is due, when the last one was taken (moments), and the days between the last two.
    double NextTime() const { return nextTime_; }
    void SetNextTime(double moment) { nextTime_ = moment; }
    double LastFrameTime() const { return lastFrameTime_; }
    double LastFrameInterval() const { return lastFrameInterval_; }

    /// Frames delivered during the last whole second.
    float FPS() const { return fps_; }

    /// Bits per pixel of the driver's frames.
    float BPP() const { return bpp_; }

    /// The size of the driver's frames in pixels; 0 before the first one.
    int Width() const { return width_; }
    int Height() const { return height_; }

    /// The last frame; empty (no pixels) before the first one.
    tessaloom::DIB& DIB() { return dib_; }
    const tessaloom::DIB& DIB() const { return dib_; }

    /// A new frame has come since the reader last cleared the flag.
    bool NewDIB() const { return newDIB_; }
    void SetNewDIB(bool fresh) { newDIB_ = fresh; }
    bool NewPreviewDIB() const { return newPreviewDIB_; }
    void SetNewPreviewDIB(bool fresh) { newPreviewDIB_ = fresh; }

    /// Counts delivered frames, from 0 again after 10,000,000.
    int FRAME() const { return frame_; }

    /// No grab is outstanding.
    bool ResetFrame() const { return resetFrame_; }
    void SetResetFrame(bool reset) { resetFrame_ = reset; }

    /// The driver is connected; false: the feed never delivers.
    bool Valid() const { return valid_; }

    /// Which dialogs of its own the driver offers.
    bool HasSource() const { return hasSource_; }
    bool HasFormat() const { return hasFormat_; }
    bool HasDisplay() const { return hasDisplay_; }

    /// The live preview is shown in the main window. The other two are no settings of the file.
    bool ShowPreview() const { return showPreview_; }
    void SetShowPreview(bool show) { Set(showPreview_, show); }
    bool ShowPreviewInSetup() const { return showPreviewInSetup_; }
    void SetShowPreviewInSetup(bool show) { showPreviewInSetup_ = show; }
    bool ShowDebugInfo() const { return showDebugInfo_; }
    void SetShowDebugInfo(bool show) { showDebugInfo_ = show; }

    tessaloom::MotionDetect& MotionDetect() { return motionDetect_; }
    const tessaloom::MotionDetect& MotionDetect() const { return motionDetect_; }

private:
    template <typename T>
    void Set(T& field, std::type_identity_t<T> value) {
        if (Store(field, std::move(value))) owner_.SettingChanged();
    }

    SettingsOwner& owner_;
    tessaloom::MotionDetect motionDetect_;
    tessaloom::DIB dib_;
    std::string feedName_;
    double rate_ = 30;
    double nextTime_ = 0;
    double lastFrameTime_ = 0;
    double lastFrameInterval_ = 0;
    float fps_ = 0;
    float bpp_ = 0;
    int vfwInput_ = NoInput;
    int width_ = 0;
    int height_ = 0;
    int frame_ = 0;
    bool enabled_ = false;
    bool newDIB_ = false;
    bool newPreviewDIB_ = false;
    bool resetFrame_ = true;
    bool valid_ = false;
    bool hasSource_ = false;
    bool hasFormat_ = false;
    bool hasDisplay_ = false;
    bool showPreview_ = false;
    bool showPreviewInSetup_ = false;
    bool showDebugInfo_ = false;
};

}  // namespace tessaloom
