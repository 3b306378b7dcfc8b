#include "platform/qt/VectorScene.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>

#include "platform/qt/NumberReader.h"
#include "platform/qt/ShapeWork.h"

namespace tessaloom {

namespace {

// What things cost (see ShapeWork), measured on drawings that were made to be slow.
constexpr double ElementWork = 2'000;  ///< Any element, drawn once.
constexpr double StopWork = 4;         ///< A colour of a gradient, each time it is filled with.
constexpr double TextWork = 100'000;   ///< A text: finding the font and the shapes of its letters.
constexpr double LetterWork = 20'000;  ///< Where left to right and right to left take turns.
constexpr double LetterAreaWork = 8;   ///< A pixel of the box about a letter.

constexpr int MaximumLevels = 50;  ///< Of uses within uses; beyond this the work counts as endless.

/// Goes through a scene as drawing it does, and adds up the work.
class Walk {
public:
    Walk(const VectorScene& scene, int width, int height, double limit)
        : scene_(scene),
          width_(width),
          height_(height),
          limit_(limit),
          active_(scene.elements.size()),
          shapes_(width, height) {}

    double Work() {
        Stretch whole;
        if (scene_.viewWidth > 0 && scene_.viewHeight > 0) {
            // Whichever way it is fitted into the picture.
            const double scale = std::max(width_ / scene_.viewWidth, height_ / scene_.viewHeight);
            whole = {scale, 0, 0, scale};
        }
        whole.known = !scene_.unplaced;
        Draw(0, whole, VectorStyle(), 0);
        return work_;
    }

private:
    void Draw(int index, const Stretch& outer, const VectorStyle& inherited, int level) {
        if (work_ > limit_ || active_[static_cast<std::size_t>(index)]) return;
        const VectorElement& element = scene_.elements[static_cast<std::size_t>(index)];
        if (element.kind == VectorElement::Kind::Definitions) return;
        work_ += ElementWork + StopWork * static_cast<double>(scene_.stops);
        if (level > MaximumLevels) work_ = limit_ + 1;
        const Stretch stretch = outer * element.stretch;
        const VectorStyle said = inherited.With(element.style);
        const VectorStyle style = said.OrWorse(scene_.sheet);
        if (element.kind == VectorElement::Kind::Shape)
            work_ += shapes_.Of(element.outline, stretch, style, scene_.miterLimit);
        if (element.kind == VectorElement::Kind::Text) Text(element, stretch, style.OrWorse(element.within));
        active_[static_cast<std::size_t>(index)] = true;  // what uses itself is not drawn again
        if (element.kind == VectorElement::Kind::Use)
            for (auto it = scene_.named.constFind(element.link);
                 it != scene_.named.cend() && it.key() == element.link; ++it)
                Draw(*it, stretch, said, level + 1);
        for (const int child : element.children) Draw(child, stretch, said, level);
        active_[static_cast<std::size_t>(index)] = false;
    }

    void Text(const VectorElement& text, const Stretch& stretch, const VectorStyle& style) {
        constexpr double UsualSize = 20;
        const double size = std::max(style.fontSize.value_or(0), UsualSize) * stretch.Scale();
        const auto letters = static_cast<double>(text.letters);
        const double page = width_ * height_;
        const double area = stretch.known ? std::min(letters * size * size * 2, page) : page;
        work_ += TextWork + letters * LetterWork + area * LetterAreaWork;
        if (style.stroked.value_or(false))
            work_ += shapes_.Of(VectorOutline::OfLetter(std::max(style.fontSize.value_or(0), UsualSize)),
                                stretch, style, scene_.miterLimit, letters);
    }

    const VectorScene& scene_;
    const double width_, height_, limit_;
    double work_ = 0;
    std::vector<bool> active_;  ///< Elements within which the walk is.
    ShapeWork shapes_;
};

/// One part of a transformation.
Stretch OfOne(std::string_view name, std::string_view arguments) {
    double values[6] = {};
    std::size_t count = 0;
    NumberReader numbers(arguments);
    while (count < std::size(values))
        if (const auto value = numbers.Next())
            values[count++] = *value;
        else
            break;
    const double angle = values[0] * std::numbers::pi / 180;
    if (!numbers.AtEnd() || count == 0) return {.known = false};
    if (name == "matrix" && count == 6) return {values[0], values[1], values[2], values[3]};
    if (name == "scale" && count <= 2) return {values[0], 0, 0, count == 2 ? values[1] : values[0]};
    if (name == "rotate" && (count == 1 || count == 3))
        return {std::cos(angle), std::sin(angle), -std::sin(angle), std::cos(angle)};
    if (name == "skewX" && count == 1) return {1, 0, std::tan(angle), 1};
    if (name == "skewY" && count == 1) return {1, std::tan(angle), 0, 1};
    return {.known = name == "translate" && count <= 2};
}

}  // namespace

Stretch Stretch::Of(std::string_view transform) {
    constexpr std::string_view Blanks = " \t\r\n,";
    Stretch whole;
    while (whole.known && transform.find_first_not_of(Blanks) != std::string_view::npos) {
        transform.remove_prefix(transform.find_first_not_of(Blanks));
        const std::size_t open = transform.find('('), close = transform.find(')');
        whole.known = open < close && close != std::string_view::npos;
        if (!whole.known) break;
        std::string_view name = transform.substr(0, open);
        name = name.substr(0, name.find_last_not_of(Blanks) + 1);
        whole = whole * OfOne(name, transform.substr(open + 1, close - open - 1));
        transform.remove_prefix(close + 1);
    }
    return whole;
}

double Stretch::Scale() const {
    const double sum = a * a + b * b + c * c + d * d, areas = a * d - b * c;
    return std::sqrt((sum + std::sqrt(std::max(sum * sum - 4 * areas * areas, 0.0))) / 2);
}

Stretch operator*(const Stretch& outer, const Stretch& inner) {
    // So that products of many of them stay numbers.
    const auto held = [](double value) { return std::clamp(value, -1e15, 1e15); };
    return {held(outer.a * inner.a + outer.c * inner.b), held(outer.b * inner.a + outer.d * inner.b),
            held(outer.a * inner.c + outer.c * inner.d), held(outer.b * inner.c + outer.d * inner.d),
            outer.known && inner.known};
}

VectorStyle VectorStyle::With(const VectorStyle& own) const {
    return {own.stroked ? own.stroked : stroked, own.strokeWidth ? own.strokeWidth : strokeWidth,
            own.dash ? own.dash : dash, own.fontSize ? own.fontSize : fontSize};
}

VectorStyle VectorStyle::OrWorse(const VectorStyle& other) const {
    VectorStyle worse = With({});
    const auto larger = [](std::optional<double>& mine, const std::optional<double>& theirs) {
        if (theirs) mine = std::max(mine.value_or(0), *theirs);
    };
    if (other.stroked) worse.stroked = worse.stroked.value_or(false) || *other.stroked;
    larger(worse.strokeWidth, other.strokeWidth);
    larger(worse.fontSize, other.fontSize);
    if (other.dash.value_or(0) > 0)
        worse.dash = worse.dash.value_or(0) > 0 ? std::min(*worse.dash, *other.dash) : other.dash;
    return worse;
}

std::int64_t VectorScene::Work(int width, int height, std::int64_t limit) const {
    return static_cast<std::int64_t>(
        std::min(Walk(*this, width, height, static_cast<double>(limit)).Work(), 9e18));
}

}  // namespace tessaloom
