#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

#include "core/OwnedSettings.h"
#include "imaging/DIB.h"
#include "imaging/pixelops/FrameChange.h"
#include "video/MotionSaves.h"

namespace tessaloom {

class Desktop;

/// The motion detector of one video feed: compares each new frame with the one before and decides whether
/// enough of the picture became darker or brighter. A trigger beeps, records what was measured, calls
/// `OnTrigger` and saves pictures, as the settings say.
///
/// Owned by its `VideoFeed`. Limits are kept on the detector's scale and, beside it, in the percents that the
/// portfolio file holds (MotionScale.h); a percent is given back as it was set until the limit itself
/// changes.
class MotionDetect : private OwnedSettings {
public:
    /// What a detector works with; all outlive it.
    struct Tools {
        FileSystem& files;
        JpegCodec& jpeg;
        Desktop& desktop;
    };

    MotionDetect(SettingsOwner& owner, const Tools& tools)
        : OwnedSettings(owner), desktop_(tools.desktop), saves_(tools.files, tools.jpeg) {}

    /// Called on each trigger, when the measured values have been recorded, before pictures are saved: where
    /// the script's hook is called.
    void OnTrigger(std::function<void()> act) { onTrigger_ = std::move(act); }

    /// Runs the whole detection for a new 24-bit frame. The first frame, and the first of another size, is
    /// compared with itself.
    void DiffFrames(const DIB& frame);

    /// Judges the last comparison, advances the rest counter, decides whether to trigger, and does so.
    void CalculateMotion();

    /// The next frame is compared with itself: what came before it was seen at another time or place.
    void ForgetPrevious() { previousDataValid_ = false; }

    /// Detection runs on every new frame. Switched on, it forgets what it saw before.
    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled);

    /// The slot of the owning feed, 0 .. 9.
    int FeedNumber() const { return feedNumber_; }
    void SetFeedNumber(int slot) { feedNumber_ = slot; }

    /// The capture time between the last two frames, in days; given by the feed before each frame.
    double LastFrameInterval() const { return lastFrameInterval_; }
    void SetLastFrameInterval(double days) { lastFrameInterval_ = days; }

    /// Radius in pixels of the blur before frames are compared, 0 (none) .. 3 (a 7 x 7 square).
    int DiffPreBlurRadius() const { return diffPreBlurRadius_; }
    void SetDiffPreBlurRadius(int pixels) { Set(diffPreBlurRadius_, pixels, {0, 3}); }

    /// Difference values at or above it count as lighter, 128 .. 255.
    int BrighterMotionLimit() const { return brighterMotionLimit_; }
    void SetBrighterMotionLimit(int value);

    /// The same in percent, 0 .. 100.
    double BrighterPercent() const { return brighterPercent_; }
    void SetBrighterPercent(double percent);

    /// Difference values at or below it count as darker, 0 .. 127.
    int DarkerMotionLimit() const { return darkerMotionLimit_; }
    void SetDarkerMotionLimit(int value);

    /// The same in percent, -100 .. 0.
    double DarkerPercent() const { return darkerPercent_; }
    void SetDarkerPercent(double percent);

    /// The level on the logarithmic coverage scale that triggers, 0 (never) .. 1 (the whole picture).
    float CoverageLimit() const { return coverageLimit_; }
    void SetCoverageLimit(float level);

    /// The same in percent, 0 .. 100.
    double CoveragePercent() const { return coveragePercent_; }
    void SetCoveragePercent(double percent);

    /// The least distance between two triggers, -60 .. 60: below 0 in frames, otherwise in seconds.
    int MotionTriggerRestInterval() const { return motionTriggerRestInterval_; }
    void SetMotionTriggerRestInterval(int interval) { Set(motionTriggerRestInterval_, interval, {-60, 60}); }

    /// Sounds the system beep on a trigger.
    bool MotionBeep() const { return motionBeep_; }
    void SetMotionBeep(bool beep) { Set(motionBeep_, beep); }

    /// On a trigger the frame is saved to one file. Qualities are JPEG qualities, 1 .. 100.
    bool SaveFixed() const { return saveFixed_; }
    void SetSaveFixed(bool save) { Set(saveFixed_, save); }
    const std::string& SaveFixedFileName() const { return saveFixedFileName_; }
    void SetSaveFixedFileName(std::string_view path) { Set(saveFixedFileName_, std::string(path)); }
    int SaveFixedQuality() const { return saveFixedQuality_; }
    void SetSaveFixedQuality(int quality) { Set(saveFixedQuality_, quality, {1, 100}); }

    /// On a trigger the frame is saved to a new file, named by time stamp, in the folder
    /// `SaveSequentialPath`.
    bool SaveSequential() const { return saveSequential_; }
    void SetSaveSequential(bool save) { Set(saveSequential_, save); }
    const std::string& SaveSequentialPath() const { return saveSequentialPath_; }
    void SetSaveSequentialPath(std::string_view path) { Set(saveSequentialPath_, std::string(path)); }
    int SaveSequentialQuality() const { return saveSequentialQuality_; }
    void SetSaveSequentialQuality(int quality) { Set(saveSequentialQuality_, quality, {1, 100}); }

    /// Beside each saved frame the difference image is saved as well.
    bool SaveDiff() const { return saveDiff_; }
    void SetSaveDiff(bool save) { Set(saveDiff_, save); }
    int SaveDiffQuality() const { return saveDiffQuality_; }
    void SetSaveDiffQuality(int quality) { Set(saveDiffQuality_, quality, {1, 100}); }

    /// The difference window is shown (no setting of the file) and has its coverage graph.
    bool ShowDiffFrameImage() const { return showDiffFrameImage_; }
    void SetShowDiffFrameImage(bool show) { showDiffFrameImage_ = show; }
    bool ShowDiffImageCoverage() const { return showDiffImageCoverage_; }
    void SetShowDiffImageCoverage(bool show) { Set(showDiffImageCoverage_, show); }

    /// The windows of this detector that are asked for. A desktop opens and closes them after these; without
    /// one nothing comes of it.
    void ShowSetup() { setupShown_ = true; }
    void CloseSetup() { setupShown_ = false; }
    bool SetupShown() const { return setupShown_; }
    void ShowDiffFrame() { showDiffFrameImage_ = true; }
    void CloseDiffFrame() { showDiffFrameImage_ = false; }

    /// What a comparison came to: the coverage on the logarithmic scale, and the lowest (0 .. 128) and
    /// highest (128 .. 255) difference value.
    struct Measurement {
        float coverage = 0;
        int darkMin = 128;
        int lightMax = 128;
    };
    const Measurement& LastMeasurement() const { return measurement_; }

    /// What the last trigger measured; -1 before the first one. Coverage is on the logarithmic scale, the
    /// lowest and highest difference values lie in 0 .. 128 and 128 .. 255.
    float LastMotionCoverage() const { return lastMotionCoverage_; }
    int LastDarkMin() const { return lastDarkMin_; }
    int LastLightMax() const { return lastLightMax_; }

    /// Frames or seconds (by the sign of the rest interval) since the last trigger, 0 .. 1000.
    double MotionTriggerTime() const { return motionTriggerTime_; }
    void SetMotionTriggerTime(double count) { motionTriggerTime_ = Clamped(count, {0, 1000}); }

    /// The moment of the last trigger; 0 before the first one.
    double LastMotionTriggerTime() const { return lastMotionTriggerTime_; }

    /// A previous frame of the present size is there to compare with.
    bool PreviousDataValid() const { return previousDataValid_; }

    /// The last comparison: 128 for no change, above it lighter, below it darker. Empty before the first
    /// frame.
    const DIB& Difference() const;

    /// Counts of the difference values of the last comparison, for all colour components.
    using HistogramCounts = std::array<int, 256>;
    const HistogramCounts& Histogram() const;

private:
    void Measure() const;
    bool Rested() const;
    void Trigger();

    Desktop& desktop_;
    MotionSaves saves_;
    const DIB* frame_ = nullptr;  ///< The one being worked on.
    std::function<void()> onTrigger_;
    DIB previous_;
    DIB working_;  ///< The frame, blurred if asked for.
    Measurement measurement_;
    pixelops::FrameChange change_;  ///< From the previous to the working frame.
    mutable DIB difference_;
    std::string saveFixedFileName_ = "motion\\motion.jpg";
    std::string saveSequentialPath_ = "motion\\";
    double brighterPercent_ = 100;
    double darkerPercent_ = -100;
    double coveragePercent_ = 100;
    double lastFrameInterval_ = 0;
    double motionTriggerTime_ = 0;
    double lastMotionTriggerTime_ = 0;
    float coverageLimit_ = 1;
    float lastMotionCoverage_ = -1;
    int feedNumber_ = 0;
    int diffPreBlurRadius_ = 0;
    int brighterMotionLimit_ = 255;
    int darkerMotionLimit_ = 0;
    int motionTriggerRestInterval_ = 0;
    int saveFixedQuality_ = 80;
    int saveSequentialQuality_ = 80;
    int saveDiffQuality_ = 80;
    int lastDarkMin_ = -1;
    int lastLightMax_ = -1;
    bool enabled_ = false;
    bool motionBeep_ = false;
    bool saveFixed_ = false;
    bool saveSequential_ = false;
    bool saveDiff_ = false;
    bool showDiffFrameImage_ = false;
    bool showDiffImageCoverage_ = false;
    bool setupShown_ = false;
    bool previousDataValid_ = false;
    mutable bool measured_ = true;  ///< The difference image and the histogram show the last comparison.
    mutable HistogramCounts histogram_{};
};

}  // namespace tessaloom
