#include "ui/canvas/Snapping.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "model/Canvas.h"
#include "model/edit/Layers.h"

namespace tessaloom {

namespace {

struct Nearest {
    double shift = 0;
    std::optional<double> line;
};

Nearest Find(std::initializer_list<double> places, const std::vector<double>& lines, double reach) {
    Nearest nearest;
    for (const double place : places)
        for (const double line : lines)
            if (const double far = std::abs(line - place); far <= reach) {
                reach = std::nextafter(far, 0);  // of lines equally near, the first
                nearest = {line - place, line};
            }
    return nearest;
}

}  // namespace

Snapping::Snapping(const Canvas& canvas, std::span<const LayerId> dragged)
    : columns_{0, canvas.Width() / 2.0, static_cast<double>(canvas.Width())},
      rows_{0, canvas.Height() / 2.0, static_cast<double>(canvas.Height())} {
    for (const LayerId layer : Layers::InDrawingOrder(canvas)) {
        if (std::ranges::count(dragged, layer) || !Layers::Enabled(canvas, layer)) continue;
        const auto place = Layers::GeometryOf(canvas, layer);
        if (!place || place->left >= place->right) continue;
        for (const double x : {static_cast<double>(place->left), (place->left + place->right) / 2.0,
                               static_cast<double>(place->right)})
            columns_.push_back(x);
        for (const double y : {static_cast<double>(place->top), (place->top + place->bottom) / 2.0,
                               static_cast<double>(place->bottom)})
            rows_.push_back(y);
    }
}

Snapping::Hit Snapping::Move(const QRectF& frame, double reach) const {
    const Nearest x = Find({frame.left(), frame.center().x(), frame.right()}, columns_, reach);
    const Nearest y = Find({frame.top(), frame.center().y(), frame.bottom()}, rows_, reach);
    return {
        {x.shift, y.shift},
        x.line, y.line
    };
}

Snapping::Hit Snapping::Point(QPointF point, bool horizontally, bool vertically, double reach) const {
    const Nearest x = horizontally ? Find({point.x()}, columns_, reach) : Nearest{};
    const Nearest y = vertically ? Find({point.y()}, rows_, reach) : Nearest{};
    return {
        {x.shift, y.shift},
        x.line, y.line
    };
}

}  // namespace tessaloom
