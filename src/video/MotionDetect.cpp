#include "video/MotionDetect.h"

#include "video/MotionScale.h"

namespace tessaloom {
namespace {

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

}  // namespace

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
