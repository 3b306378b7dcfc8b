#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "imaging/DIB.h"
#include "imaging/LayerHost.h"
#include "model/CanvasView.h"
#include "model/Composition.h"
#include "model/DocumentFault.h"
#include "time/LayerTimingTable.h"

namespace tessaloom {

class CanvasSaves;
class Graphic;
class Portfolio;
class Schedule;
class Text;
class VideoStreaming;

/// One composed picture: a background, up to 100 text and 100 graphic layers in four passes, and its outputs.
///
/// Owned by its `Portfolio`, which has one for each of its slots; a slot is in use while its canvas is
/// `Enabled`. Every setting that the canvas file holds sets `NeedSaving`; what changes the picture also asks
/// for drawing. The members of the timed saves (`FixedEnabled`, `CascadeCount`, `SequentialPath` ...) are
/// those of `Saves()`.
class Canvas final : public LayerHost {
public:
    static constexpr int MaxText = LayerTimingTable::Slots;
    static constexpr int MaxGraphic = LayerTimingTable::Slots;
    static constexpr int Passes = Composition::Passes;
    static constexpr int MaxWidth = 3000;
    static constexpr int MaxHeight = 2000;

    /// slot: 1 .. 20, the canvas's place in `portfolio`.
    Canvas(Portfolio& portfolio, int slot);
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    // The file

    /// Reads `FileName`. False when it is missing, unreadable or not text: then the canvas is as it was.
    /// Values out of range are clamped and told to the portfolio's fault handler. Ends with `NeedSaving`
    /// false.
    bool LoadFile(Reading reading = Reading::Completing);

    /// Writes `FileName` as one transaction and clears `NeedSaving`. Nothing and false without a file name.
    bool SaveFile();

    // The update cycle

    /// Refreshes the layers that are due and, when anything visible changed, composes the picture anew.
    void UpdateImage();

    /// The picture of an enabled layer's address is on its way.
    bool SourcesPending() const;

    /// Composes pass `pass` (0 .. 3) onto what the canvas bitmap holds: shadows, then graphics, then texts.
    /// (`UpdateImage` composes the passes only where something changed.)
    void AddTextAndGraphicLayer(int pass);

    /// Shows the picture in the canvas's window, if it has one.
    void CopyTofrmMain();

    /// Runs the timed saves that are due.
    void DoSaves();

    /// The picture is composed anew in the next cycle; of one pass (0 .. 3); with every layer read anew.
    void ForceRedraw() { forceRedraw_ = true; }
    void ForceLayerRedraw(int pass) { PassChanged(pass); }
    void ForceReload() { forceReload_ = true; }

    /// Gives every graphic layer that names a feed the slot of the feed of that name, or none.
    void FindFeeds();

    /// Makes every layer and every output due at once.
    void ForceUpdate();

    /// For a clock that was set back: every next time is recomputed from the present and every reference time
    /// voided.
    void RestartTimes();

    /// Releases the layers, the bitmaps and the window and leaves the slot free. Settings stay as they are
    /// until `Portfolio::ResetCanvas` puts a new canvas there.
    void CanvasUnload();

    // Layers; slots 1 .. 100. An empty slot, and a number outside, gives null.

    tessaloom::Text* Text(int slot) const;
    tessaloom::Graphic* Graphic(int slot) const;

    /// The layer of `slot`, made when the slot was empty. Null for a slot outside 1 .. 100.
    tessaloom::Text* AddText(int slot);
    tessaloom::Graphic* AddGraphic(int slot);
    void RemoveText(int slot);
    void RemoveGraphic(int slot);

    /// The lowest empty slot; 0 when there is none.
    int FreeTextSlot() const;
    int FreeGraphicSlot() const;

    // Parts

    /// The composed picture, `Width` x `Height`; without pixels before the first composition.
    const DIB& Picture() const { return picture_; }

    /// The part of it outside of which the last composition changed nothing; empty when it changed nothing
    /// at all.
    const PixelArea& ChangedArea() const { return composition_.ChangedArea(); }
    CanvasSaves& Saves() { return *saves_; }
    const CanvasSaves& Saves() const { return *saves_; }
    tessaloom::VideoStreaming& VideoStreaming() { return *videoStreaming_; }
    const tessaloom::VideoStreaming& VideoStreaming() const { return *videoStreaming_; }
    const LayerTimingTable& Timing() const { return timing_; }

    /// The canvas's window; null without one.
    CanvasView* View() const { return view_.get(); }

    // Properties

    const std::string& Name() const { return name_; }
    void SetName(std::string_view name);

    /// The full path as the user or the portfolio file gave it; "" for a canvas that was never saved.
    const std::string& FileName() const { return fileName_; }
    void SetFileName(std::string_view path);

    /// Pixels, 1 .. 3000 by 1 .. 2000.
    int Width() const { return width_; }
    int Height() const { return height_; }
    void SetWidth(int pixels) { SetWidthHeight(pixels, height_); }
    void SetHeight(int pixels) { SetWidthHeight(width_, pixels); }
    void SetWidthHeight(int width, int height);

    bool SizeLocked() const { return sizeLocked_; }
    void SetSizeLocked(bool locked);

    /// The place of the canvas's window in its frame.
    int Left() const { return left_; }
    void SetLeft(int position);
    int Top() const { return top_; }
    void SetTop(int position);

    /// 0 normal, 1 minimized; a maximized window (2) is stored as normal.
    int WindowState() const { return windowState_; }
    void SetWindowState(int state);

    /// Percent, 0 .. 100: the opacity at which each pass's shadow lies on the canvas.
    int ShadowIntensity() const { return shadowIntensity_; }
    void SetShadowIntensity(int percent);

    /// 0x00BBGGRR.
    int BackgroundColor() const { return backgroundColor_; }
    void SetBackgroundColor(int colour);

    /// The kind of window that shows the canvas.
    int FormType() const { return formType_; }
    void SetFormType(int type);

    /// Anything that the canvas file holds has changed since it was last loaded or saved.
    bool NeedSaving() const { return needSaving_; }
    void SetNeedSaving(bool needSaving) { needSaving_ = needSaving; }

    /// The slot is in use: the canvas is updated, saved and published.
    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled);

    /// The canvas has its window, where there is a desktop to show it.
    bool Visible() const { return visible_; }
    void SetVisible(bool visible);
    void ActivitateFormTimer();

    // LayerHost

    void SettingChanged() override;
    double Now() const override;
    int CanvasIndex() const override { return slot_; }
    void PassChanged(int pass) override;
    const DIB* CanvasPicture(int canvas) const override;
    std::shared_ptr<const DIB> FeedFrame(int feed) const override;
    void ScheduleStateChanged() override { ForceRedraw(); }

private:
    /// A layer with a daily window, to be asked on every tick.
    struct ScheduledLayer {
        LayerTiming& timing;
        Schedule& schedule;
    };

    void MakeParts();
    void Touch();
    void WindowSettingChanged();
    void AskSchedules(double now);
    void FindScheduledLayers();
    bool Due(const LayerTiming& timing, double now) const;
    bool UpdateTexts(double now);
    bool UpdateGraphics(double now);
    bool NeedsComposing() const;
    void Compose();
    void CollectLayers();
    Composition::Ground Ground() const;
    void NameFeeds();

    Portfolio& portfolio_;
    const int slot_;

    std::string name_ = "New Canvas";
    std::string fileName_;
    int width_ = 320;
    int height_ = 240;
    bool sizeLocked_ = false;
    int left_ = 0;
    int top_ = 0;
    int windowState_ = 0;
    int shadowIntensity_ = 30;
    int backgroundColor_ = 0xFFFFFF;
    int formType_ = 0;
    bool needSaving_ = false;
    bool enabled_ = false;
    bool visible_ = false;

    DIB picture_;
    Composition composition_;
    Composition::Layers layers_;  ///< Those that are shown, while they are composed.
    std::array<bool, Passes> passChanged_{};
    bool forceRedraw_ = true;
    bool forceReload_ = false;
    bool composeForced_ = false;  ///< A layer that was due by force was refreshed in this cycle.

    LayerTimingTable timing_;
    std::array<std::unique_ptr<tessaloom::Text>, MaxText + 1> texts_;
    std::array<std::unique_ptr<tessaloom::Graphic>, MaxGraphic + 1> graphics_;
    int textHighWater_ = MaxText + 1;
    int graphicHighWater_ = MaxGraphic;
    std::vector<ScheduledLayer> scheduled_;
    bool scheduledStale_ = true;  ///< A layer or a setting changed since `scheduled_` was made.

    std::unique_ptr<CanvasSaves> saves_;
    std::unique_ptr<tessaloom::VideoStreaming> videoStreaming_;
    std::unique_ptr<CanvasView> view_;
};

}  // namespace tessaloom
