#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/SettingsOwner.h"
#include "imaging/ErrorsFile.h"
#include "imaging/PictureAccess.h"
#include "model/CanvasView.h"
#include "model/DocumentFault.h"
#include "text/TagSource.h"
#include "time/ClockWatch.h"
#include "time/PresentTime.h"

namespace tessaloom {

class Canvas;
class InputDevice;
class Script;
class VideoFeed;
class VWS;
class WebHost;
class WebServer;
struct Platform;

/// The top-level document: the open canvases, the video feeds, the web server, the weather input and the
/// script.
///
/// Owned by the program; at most one exists. All its slots always hold an object: a canvas slot is in use
/// while its canvas is `Enabled`. Moments are local day numbers (time/modTime.h).
class Portfolio final : public SettingsOwner, public PresentTime, public TagSource {
public:
    static constexpr int MaxCanvas = 20;  ///< Canvas slots are 1 .. 20.
    static constexpr int MaxFeed = 10;    ///< Feed slots are 0 .. 9.

    /// platform: outlives the portfolio.
    explicit Portfolio(Platform& platform);
    ~Portfolio();
    Portfolio(const Portfolio&) = delete;
    Portfolio& operator=(const Portfolio&) = delete;

    // The file

    /// Reads `FileName` and the canvases it names, then calls the script's start-up hook when it is enabled.
    /// False when the file cannot be read as text; whatever could be loaded is there. A missing file is made.
    /// A canvas that cannot be loaded, or whose file is in use already, leaves its slot out with a fault; its
    /// name is kept in the portfolio's file.
    bool LoadFile(Reading reading = Reading::Completing);

    /// Writes `FileName` as one transaction and clears `NeedSaving`. The canvas files are not written.
    bool SaveFile();

    /// Saves every open canvas that needs saving and has a file name.
    void SaveCanvases();

    /// Closes the canvas of `slot` and frees the slot.
    void ResetCanvas(int slot);

    /// Calls the script's shutdown hook, then unloads script, web server, feeds, input devices and canvases.
    void PortfolioUnload();

    // One tick, in this order, after `SetCaptureTime`. Each stops at once when the running flag became false.

    void UpdateOtherPre();
    void UpdateImages();
    void UpdateVideoFeeds();
    void UpdateInputDevices();
    void UpdateOtherPost();

    /// Makes every activity due at once.
    void ForceUpdate();

    /// Looks for cameras anew and opens every enabled feed anew in the next tick.
    void ReopenFeeds();

    /// The slot of the feed of that name, -1 when there is none.
    int FeedNamed(std::string_view name) const;

    // Parts

    /// slot: 1 .. 20; any other throws.
    tessaloom::Canvas& Canvas(int slot) { return *canvases_.at(static_cast<std::size_t>(slot - 1)); }
    const tessaloom::Canvas& Canvas(int slot) const {
        return *canvases_.at(static_cast<std::size_t>(slot - 1));
    }

    /// feed: 0 .. 9; any other throws.
    tessaloom::VideoFeed& VideoFeed(int feed) { return *feeds_.at(static_cast<std::size_t>(feed)); }
    const tessaloom::VideoFeed& VideoFeed(int feed) const {
        return *feeds_.at(static_cast<std::size_t>(feed));
    }

    tessaloom::WebServer& WebServer() { return *webServer_; }
    tessaloom::VWS& VWS() { return *vws_; }
    tessaloom::Script& Script() { return *script_; }
    const tessaloom::Script& Script() const { return *script_; }

    /// The lowest canvas slot that is not in use; 0 when all are.
    int FreeCanvasSlot() const;

    /// The slot in use whose canvas has the file at `path`, however that is written; 0 when none has.
    int SlotOfFile(std::string_view path) const;

    /// The number of slots in use.
    int CanvasesOpen() const;

    Platform& PlatformServices() const { return platform_; }
    const PictureAccess& Pictures() const { return pictures_; }

    // Properties

    const std::string& FileName() const { return fileName_; }
    void SetFileName(std::string_view path);

    /// Anything in the portfolio's file, or in an open canvas, changed since the last load or save.
    bool NeedSaving() const;
    void SetNeedSaving(bool needSaving) { needSaving_ = needSaving; }

    /// The slot whose window is active; 0 when none is.
    int ActiveCanvas() const { return activeCanvas_; }
    void SetActiveCanvas(int slot);

    /// Percent, 0 .. 100. Setting it sets that of every open canvas, which may then differ again.
    double ShadowIntensity() const { return shadowIntensity_; }
    void SetShadowIntensity(double percent);

    /// The one present moment of a tick; 0 before the first. Setting it to a moment more than a second before
    /// the last one recomputes every next time and voids every reference time.
    double CaptureTime() const { return captureTime_; }
    void SetCaptureTime(double moment);

    /// The moment that the frames of this tick bear: its capture time.
    double FrameTime() const { return captureTime_; }

    /// Milliseconds that the work of the last tick took; 0 before the first one ended.
    double CycleTime() const { return cycleTime_; }
    void SetCycleTime(double milliseconds) { cycleTime_ = milliseconds; }

    /// The number of input devices, 0 .. 10; devices beyond it are unloaded, new ones are not enabled.
    void SetInputDeviceCount(int count);

    // How it is plugged together

    /// Who is told of faults in documents; by default the common error report.
    void SetFaultHandler(DocumentFaultHandler handler) { faultHandler_ = std::move(handler); }
    void ReportFault(const DocumentFault& fault);

    /// Who makes canvas windows; none by default.
    void SetViewFactory(CanvasViewFactory factory) { viewFactory_ = std::move(factory); }
    const CanvasViewFactory& ViewFactory() const { return viewFactory_; }

    // SettingsOwner, PresentTime, TagSource

    void SettingChanged() override { needSaving_ = true; }
    double Now() const override;
    double LastMotionTime(int feed) const override;
    const tessaloom::VWS* Weather() const override { return vws_.get(); }

private:
    friend class PortfolioFile;

    void RestartTimes();
    template <typename Work>
    void ForOpenCanvases(Work work);

    Platform& platform_;
    ErrorsFile errors_;
    PictureAccess pictures_;
    std::string fileName_;
    bool needSaving_ = false;
    int activeCanvas_ = 0;
    double shadowIntensity_ = 30;
    double captureTime_ = 0;
    double cycleTime_ = 0;
    ClockWatch clockWatch_;
    DocumentFaultHandler faultHandler_;
    CanvasViewFactory viewFactory_;

    std::array<std::unique_ptr<tessaloom::Canvas>, MaxCanvas> canvases_;  ///< Of slots 1, 2 ..
    std::array<std::string, MaxCanvas + 1> unloadedNames_;  ///< Files of slots that were left out.
    std::array<std::unique_ptr<tessaloom::VideoFeed>, MaxFeed> feeds_;
    std::vector<std::unique_ptr<InputDevice>> inputDevices_;
    std::unique_ptr<WebHost> webHost_;
    std::unique_ptr<tessaloom::WebServer> webServer_;
    std::unique_ptr<tessaloom::VWS> vws_;
    std::unique_ptr<tessaloom::Script> script_;
};

}  // namespace tessaloom
