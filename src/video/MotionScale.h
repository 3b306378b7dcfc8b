#pragma once

#include <algorithm>
#include <cmath>

/// The one place that knows how the percents of the portfolio file map to the motion detector's own values.
///
/// A difference value is 128 + current - previous, limited to 0 .. 255: 128 is no change, 255 the greatest
/// lightening and 0 the greatest darkening that can be told apart.
namespace tessaloom::MotionScale {

/// Difference values on each side of "no change" that 100 percent stand for.
inline constexpr double StepsPerPercent = 1.27;

/// Percents shown for a value that was set directly: enough decimals to find the same value again.
inline double Shown(double percent) { return std::round(percent * 100) / 100; }

/// 0 .. 100 percent lighter: 128 .. 255.
inline int BrighterLimit(double percent) {
    return 128 + static_cast<int>(std::lround(StepsPerPercent * std::clamp(percent, 0.0, 100.0)));
}
inline double BrighterPercent(int limit) { return Shown((limit - 128) / StepsPerPercent); }

/// -100 .. 0 percent (darker): 0 .. 127.
inline int DarkerLimit(double percent) {
    return 127 + static_cast<int>(std::lround(StepsPerPercent * std::clamp(percent, -100.0, 0.0)));
}
inline double DarkerPercent(int limit) { return Shown((limit - 127) / StepsPerPercent); }

/// 0 .. 100 percent of the logarithmic coverage scale: 0 .. 1.
inline float Coverage(double percent) { return static_cast<float>(std::clamp(percent, 0.0, 100.0) / 100); }
inline double CoveragePercent(float coverage) { return Shown(static_cast<double>(coverage) * 100); }

}  // namespace tessaloom::MotionScale
