#pragma once

#include <QHash>
#include <QString>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/qt/VectorOutline.h"

namespace tessaloom {

/// The part of a transformation that stretches, turns and skews: x' = a x + c y, y' = b x + d y. Where things
/// lie does not matter for the time that drawing them takes.
struct Stretch {
    double a = 1, b = 0, c = 0, d = 1;
    bool known = true;  ///< Else it may be any.

    /// Of an attribute "transform".
    static Stretch Of(std::string_view transform);

    VectorOutline::Point operator()(VectorOutline::Point point) const {
        return {a * point.x + c * point.y, b * point.x + d * point.y};
    }

    /// No length grows more than by this factor.
    double Scale() const;

    friend Stretch operator*(const Stretch& outer, const Stretch& inner);
};

/// How lines and letters are drawn, as an element says it or passes it on; empty where it says nothing.
struct VectorStyle {
    std::optional<bool> stroked;
    std::optional<double> strokeWidth;
    std::optional<double> dash;  ///< From dash to dash, on average; 0: a solid line.
    std::optional<double> fontSize;

    /// What an element is drawn with that says `own` inside of one with this style.
    VectorStyle With(const VectorStyle& own) const;

    /// Of two that may both hold, the one that takes longer.
    VectorStyle OrWorse(const VectorStyle& other) const;
};

/// One element of a vector picture.
struct VectorElement {
    enum class Kind { Group, Definitions, Shape, Text, Use };

    Kind kind = Kind::Group;
    Stretch stretch;
    VectorStyle style;
    VectorStyle within;         ///< Of a text: the worst that its parts ask for.
    VectorOutline outline;      ///< Of a shape.
    std::int64_t letters = 0;   ///< Of a text.
    QString link;               ///< Of a use: the name of the elements that it draws.
    std::vector<int> children;  ///< Indexes of elements.
};

/// A vector picture as far as the time that drawing it takes depends on it.
struct VectorScene {
    std::vector<VectorElement> elements;   ///< The first one is the whole; it is there.
    QMultiHash<QString, int> named;        ///< Elements by their names; several may bear the same.
    VectorStyle sheet;                     ///< The worst that style sheets ask for, of any element.
    double miterLimit = 4;                 ///< How far corners stick out of lines at most, in line widths.
    std::int64_t stops = 0;                ///< Colours of the longest gradient.
    bool unplaced = false;                 ///< Sizes cannot be told from what the elements say.
    double viewWidth = 0, viewHeight = 0;  ///< What is shown, in the whole's units; 0: as many as pixels.

    /// How long drawing takes at most, in about two nanoseconds each (`PictureLimits::work`): at a picture
    /// size of `width` x `height` pixels. Stops counting once it is more than `limit`.
    std::int64_t Work(int width, int height, std::int64_t limit) const;
};

}  // namespace tessaloom
