#include "video/MotionDetect.h"

#include <algorithm>
#include <cmath>

#include "core/ErrorReport.h"
#include "imaging/pixelops/Tessaloom.h"
#include "platform/Desktop.h"
#include "time/modTime.h"
#include "video/MotionScale.h"

namespace tessaloom {
namespace {

constexpr std::string_view Module = "MotionDetect.cls";
constexpr int NoChange = 128;
constexpr int KeepAllDifferences = 0;

// A limit and its percent move together; a percent that was set is kept as it is, however it rounds.
template <typename T, typename Scale>
bool StoreLimit(T& limit, double& percent, T value, Scale toPercent) {
    if (!Store(limit, value)) return false;
    percent = toPercent(limit);
    return true;
}

template <typename T, typename Scale>
bool StorePercent(double& percent, T& limit, double value, Range<double> range, Scale toLimit) {
    if (!Store(percent, value, range)) return false;
    limit = toLimit(percent);
    return true;
}

constexpr Range<double> Lighter{0, 100};
constexpr Range<double> Darker{-100, 0};
constexpr Range<double> Share{0, 100};

// The share of changed colour components on a logarithmic scale: one in a million is 0, all of them 1.
float LogCoverage(double share) { return share == 0 ? 0 : static_cast<float>(std::log10(share) / 6 + 1); }

}  // namespace

void MotionDetect::DiffFrames(const DIB& frame) {
    Trap({Module, "DiffFrames"}, [&] {
        const int width = frame.Width();
        const int height = frame.Height();
        for (DIB* bitmap : {&previous_, &working_}) {
            if (bitmap->Width() == width && bitmap->Height() == height) continue;
            bitmap->SetWidthHeight(width, height);
            previousDataValid_ = false;
        }
        if (!frame.DIBPtr() || !previous_.DIBPtr() || !working_.DIBPtr()) return;

        previous_.Swap(working_);  // what was the working frame is the previous one now
        if (!previousDataValid_) {
            Blur(frame.DIBPtr(), previous_.DIBPtr(), height, width, diffPreBlurRadius_);
            previousDataValid_ = true;
        }
        change_ =
            pixelops::BlurAndCompare(frame.DIBPtr(), working_.DIBPtr(), previous_.DIBPtr(), height, width,
                                     diffPreBlurRadius_, {darkerMotionLimit_, brighterMotionLimit_});
        measured_ = false;
        frame_ = &frame;
        CalculateMotion();
        frame_ = nullptr;
    });
}

/// The difference image and its histogram are looked at only now and then, and take longer to make than the
/// decision.
void MotionDetect::Measure() const {
    if (measured_) return;
    measured_ = true;
    difference_.SetWidthHeight(working_.Width(), working_.Height());
    DiffHistogram(difference_.DIBPtr(), working_.DIBPtr(), previous_.DIBPtr(), working_.Width(),
                  working_.Height(), KeepAllDifferences, histogram_.data());
}

const DIB& MotionDetect::Difference() const {
    Measure();
    return difference_;
}

const MotionDetect::HistogramCounts& MotionDetect::Histogram() const {
    Measure();
    return histogram_;
}

void MotionDetect::CalculateMotion() {
    Trap({Module, "CalculateMotion"}, [&] {
        const double all = 3.0 * working_.Width() * working_.Height();
        measurement_ = {.coverage = LogCoverage(all > 0 ? static_cast<double>(change_.beyond) / all : 0),
                        .darkMin = change_.lowest > NoChange ? 0 : change_.lowest,
                        .lightMax = std::max(change_.highest, NoChange)};
        const float ratio =
            coverageLimit_ <= 0 ? 0 : std::clamp(measurement_.coverage / coverageLimit_, 0.0F, 2.0F);

        const double step = motionTriggerRestInterval_ < 0 ? 1 : lastFrameInterval_ * modTime::SecondsPerDay;
        SetMotionTriggerTime(motionTriggerTime_ + step);
        if (ratio >= 1 && Rested()) Trigger();
    });
}

void MotionDetect::Trigger() {
    motionTriggerTime_ = 0;
    if (motionBeep_) desktop_.Beep();
    lastMotionCoverage_ = measurement_.coverage;
    lastDarkMin_ = measurement_.darkMin;
    lastLightMax_ = measurement_.lightMax;
    lastMotionTriggerTime_ = modTime::Clock();
    if (onTrigger_) onTrigger_();
    if (frame_) saves_.Save(*this, *frame_);
}

// More frames than asked for, but as many seconds. Kept: rest intervals were set with this in mind.
bool MotionDetect::Rested() const {
    return motionTriggerRestInterval_ < 0 ? motionTriggerTime_ > -motionTriggerRestInterval_
                                          : motionTriggerTime_ >= motionTriggerRestInterval_;
}

void MotionDetect::SetEnabled(bool enabled) {
    if (!Store(enabled_, enabled)) return;
    if (enabled) ForgetPrevious();
    owner_.SettingChanged();
}

void MotionDetect::SetBrighterMotionLimit(int value) {
    if (StoreLimit(brighterMotionLimit_, brighterPercent_, Clamped(value, {128, 255}),
                   MotionScale::BrighterPercent))
        owner_.SettingChanged();
}

void MotionDetect::SetBrighterPercent(double percent) {
    if (StorePercent(brighterPercent_, brighterMotionLimit_, percent, Lighter, MotionScale::BrighterLimit))
        owner_.SettingChanged();
}

void MotionDetect::SetDarkerMotionLimit(int value) {
    if (StoreLimit(darkerMotionLimit_, darkerPercent_, Clamped(value, {0, 127}), MotionScale::DarkerPercent))
        owner_.SettingChanged();
}

void MotionDetect::SetDarkerPercent(double percent) {
    if (StorePercent(darkerPercent_, darkerMotionLimit_, percent, Darker, MotionScale::DarkerLimit))
        owner_.SettingChanged();
}

void MotionDetect::SetCoverageLimit(float level) {
    if (StoreLimit(coverageLimit_, coveragePercent_, Clamped(level, {0, 1}), MotionScale::CoveragePercent))
        owner_.SettingChanged();
}

void MotionDetect::SetCoveragePercent(double percent) {
    if (StorePercent(coveragePercent_, coverageLimit_, percent, Share, MotionScale::Coverage))
        owner_.SettingChanged();
}

}  // namespace tessaloom
