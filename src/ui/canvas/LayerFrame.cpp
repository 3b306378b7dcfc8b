#include "ui/canvas/LayerFrame.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tessaloom {

namespace {

constexpr double Radian = std::numbers::pi / 180;

/// Degrees counterclockwise from the right, y downwards.
double Direction(QPointF from) { return std::atan2(-from.y(), from.x()) / Radian; }

}  // namespace

QPointF LayerFrame::Turned(QPointF point, double degrees) {
    const double sine = std::sin(degrees * Radian), cosine = std::cos(degrees * Radian);
    return {point.x() * cosine + point.y() * sine, point.y() * cosine - point.x() * sine};
}

QPolygonF LayerFrame::Outline() const {
    return QPolygonF({Corner(-1, -1), Corner(1, -1), Corner(1, 1), Corner(-1, 1)});
}

LayerFrame LayerFrame::Resized(const Grip& grip, QPointF by, SizeRules rules) const {
    const QPointF local = Turned(by, -angle) * (rules.fromCentre ? 2 : 1);
    double newWidth = width + grip.column * local.x();
    double newHeight = height + grip.row * local.y();
    if (rules.proportional && width > 0 && height > 0) {
        double factor = grip.column == 0 ? newHeight / height : newWidth / width;
        if (grip.column != 0 && grip.row != 0) factor = std::max(newWidth / width, newHeight / height);
        factor = std::max(factor, 1 / std::min(width, height));
        newWidth = width * factor;
        newHeight = height * factor;
    }
    newWidth = std::clamp(std::round(newWidth), 1.0, double{Image::LargestWidth});
    newHeight = std::clamp(std::round(newHeight), 1.0, double{Image::LargestHeight});
    QPointF shift;
    if (!rules.fromCentre)
        shift = {grip.column * (newWidth - width) / 2, grip.row * (newHeight - height) / 2};
    return {At(shift), newWidth, newHeight, angle};
}

double LayerFrame::TurnedTo(QPointF from, QPointF to, double step) const {
    const double turned = angle + Direction(to - centre) - Direction(from - centre);
    const double rounded = std::fmod(std::round(turned / step) * step, 360);
    return rounded < 0 ? rounded + 360 : rounded;
}

}  // namespace tessaloom
