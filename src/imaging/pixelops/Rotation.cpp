#include "imaging/pixelops/Rotation.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace tessaloom {

namespace {

int ToInt(double value) {
    constexpr double Lowest = std::numeric_limits<int>::min(), Highest = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(std::isnan(value) ? 0 : value, Lowest, Highest));
}

/// `degrees` within 0 .. below 360.
double Turn(double degrees) {
    const double turn = std::isfinite(degrees) ? std::fmod(degrees, 360) : 0;
    return turn < 0 ? turn + 360 : turn;
}

}  // namespace

PixelSize RotatedSize(int width, int height, double degrees) {
    const double turn = Turn(degrees);
    if (std::fmod(turn, 180) == 0) return {width, height};
    if (std::fmod(turn, 90) == 0) return {height, width};
    const double radians = turn * std::numbers::pi / 180;
    const double across = std::abs(std::cos(radians)), along = std::abs(std::sin(radians));
    return {ToInt(std::ceil(width * across + height * along - 1e-6)),
            ToInt(std::ceil(width * along + height * across - 1e-6))};
}

Shears RotationShears(double degrees) {
    const double radians = Turn(degrees) * std::numbers::pi / 180;
    return {static_cast<int>(Turn(degrees)), ToInt(std::round(-std::tan(radians / 2) * 65536)),
            ToInt(std::round(std::sin(radians) * 65536))};
}

}  // namespace tessaloom
