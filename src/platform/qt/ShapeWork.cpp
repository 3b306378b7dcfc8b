#include "platform/qt/ShapeWork.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tessaloom {

namespace {

// What things cost, measured on drawings that were made to be slow.
constexpr double LineWork = 50;      ///< A line or piece of a curve, however short,
constexpr double PassWork = 5;       ///< and a line each time a shape is gone through,
constexpr double PiecePassWork = 1;  ///< or a piece of a curve.
constexpr double StepWork = 5;       ///< Following an edge from one pixel to the next.
constexpr double CrossingWork = 1;   ///< Passing another edge in a row's list.

/// Edges for which there is room in one pass; rows that it takes at most. Where there is no room for all of
/// a row, it is tried over and over again.
constexpr double EdgesInAPass = 246, RowsInAPass = 32, PassesForARow = 2.5;

/// Of one curve.
constexpr double MaximumPieces = 512;

/// Of one line: the toolkit draws those with more than 10,000 repetitions of at most 16 dashes without any.
constexpr double MaximumDashes = 160'000;

/// Of a line whose size is not known, in its own units.
constexpr double VeryLong = 1e9;

/// The toolkit halves a curve until its pieces are straight to a quarter of a pixel; pieces below a unit,
/// until they are a quarter of a pixel long.
double PiecesOf(const VectorOutline::Line& curve, double scale) {
    constexpr double Straight = 0.25;
    const double straight = 1 + 3 * std::sqrt(curve.bend * scale / Straight / 2);
    const double small = 1 + curve.curve * scale / Straight;
    const bool belowUnit = curve.curve / straight < 1;
    const double tip = curve.sharp ? 2 * scale / Straight : 0;
    return std::min({belowUnit ? small : straight + tip, small, MaximumPieces});
}

struct Extent {
    double left = 0, right = 0, top = 0, bottom = 0;
};

Extent ExtentOf(const VectorOutline& outline, const Stretch& stretch) {
    if (outline.lines.empty()) return {};
    const VectorOutline::Point start = stretch(outline.lines.front().from);
    Extent extent{start.x, start.x, start.y, start.y};
    for (const auto& line : outline.lines)
        for (const auto& point : {stretch(line.from), stretch(line.to)}) {
            extent.left = std::min(extent.left, point.x);
            extent.right = std::max(extent.right, point.x);
            extent.top = std::min(extent.top, point.y);
            extent.bottom = std::max(extent.bottom, point.y);
        }
    return extent;
}

}  // namespace

double ShapeWork::Of(const VectorOutline& outline, const Stretch& stretch, const VectorStyle& style,
                     double miterLimit, double copies) {
    const Shape shape = Place(outline, stretch, style, miterLimit, copies);
    sums_ = {};
    for (const auto& line : outline.lines) Add(line, shape);

    const double box = shape.width * shape.height, sides = shape.stroked ? 3 : 1;
    const double growth = std::abs(stretch.a * stretch.d - stretch.b * stretch.c);
    const double corners = (sums_.straight + sums_.pieces) * shape.pen * shape.corner;
    const auto seen = [&](double area) { return shape.known ? std::min(area, box) : box; };
    double work = seen(outline.area * growth * copies + sums_.length);
    if (shape.stroked) work += seen(sums_.length * shape.pen + corners);
    work += ((sums_.straight + sums_.pieces) * sides + sums_.dashes) * LineWork;
    work += sums_.steps * sides * StepWork + rows_.Work(shape.width);
    return work + rows_.Passes() * sides *
                      (sums_.repeated * StepWork + sums_.pieces * PiecePassWork + sums_.straight * PassWork);
}

ShapeWork::Shape ShapeWork::Place(const VectorOutline& outline, const Stretch& stretch,
                                  const VectorStyle& style, double miterLimit, double copies) {
    constexpr double Square = 1.5;  // the corner of a line that ends in a square
    Shape shape;
    shape.stretch = stretch;
    shape.known = stretch.known && outline.understood;
    shape.scale = stretch.Scale();
    shape.stroked = style.stroked.value_or(false);
    // A stroke may keep its width whatever the scale.
    shape.pen = shape.stroked ? style.strokeWidth.value_or(1) * std::max(shape.scale, 1.0) : 0;
    shape.corner = shape.pen * std::max(miterLimit, Square) / 2;
    shape.dash = style.dash.value_or(0);
    shape.copies = copies;
    const Extent extent = ExtentOf(outline, stretch);
    const auto within = [&](double length, double picture) {
        return shape.known ? std::min(length + 2 * shape.corner + 1, picture) : picture;
    };
    shape.width = copies > 1 ? width_ : within(extent.right - extent.left, width_);
    shape.height = within(extent.bottom - extent.top, height_);
    rows_.Start(shape.known ? extent.top - shape.corner : 0, shape.height);
    return shape;
}

ShapeWork::Line ShapeWork::Draw(const VectorOutline::Line& line, const Shape& shape) const {
    const VectorOutline::Point from = shape.stretch(line.from), to = shape.stretch(line.to);
    Line drawn;
    const double across = shape.known ? std::abs(to.x - from.x) : width_;
    drawn.top = shape.known ? std::min(from.y, to.y) : 0;
    drawn.bottom = shape.known ? std::max(from.y, to.y) : height_;
    const double height = drawn.bottom - drawn.top;
    drawn.length = std::hypot(across, height);
    drawn.ownLength = shape.known ? std::hypot(line.to.x - line.from.x, line.to.y - line.from.y) : VeryLong;
    // A flat line is in a row's list for each pixel in which it gets a 64th of a pixel lower.
    drawn.crossings = shape.copies * (1 + std::min({across, width_, 64 * height}) / (height + 1));
    drawn.steps = std::min(across, width_) + std::min(height, height_);
    return drawn;
}

void ShapeWork::Add(const VectorOutline::Line& line, const Shape& shape) {
    const Line drawn = Draw(line, shape);
    sums_.length += drawn.length * shape.copies;
    sums_.steps += drawn.steps * shape.copies;
    sums_.repeated +=
        drawn.steps * shape.copies * std::min((drawn.bottom - drawn.top + shape.pen) / shape.height, 1.0);
    const bool curve = line.curve > 0;
    if (curve || !shape.known)
        sums_.pieces += shape.copies * (shape.known ? PiecesOf(line, shape.scale) / 3 : MaximumPieces);
    else
        sums_.straight += shape.copies;
    rows_.Add(drawn.top, drawn.bottom, drawn.crossings);
    if (shape.stroked) Stroke(drawn, shape, curve ? shape.pen / 2 : shape.corner);
}

/// A stroke has two sides, a corner or round end at both ends, and so have its dashes.
void ShapeWork::Stroke(const Line& line, const Shape& shape, double corner) {
    constexpr double Sides = 2, Corner = 3, Dash = 4;
    const double half = shape.pen / 2;
    rows_.Add(line.top - half, line.bottom + half, Sides * line.crossings);
    rows_.Add(line.top - corner, line.top + corner, Corner * shape.copies);
    if (shape.dash <= 0) return;
    // Dashes that keep their size whatever the scale are as many as the line on the screen has room for.
    const double longest = std::max(line.length, line.ownLength);
    const double dashes = std::min(longest / shape.dash + 1, MaximumDashes) * shape.copies;
    const double rows = line.bottom - line.top + shape.pen + 1;
    rows_.Add(line.top - half, line.bottom + half, dashes * Dash * (shape.pen + 2) / rows);
    sums_.dashes += dashes;
}

void ShapeWork::Rows::Start(double top, double height) {
    top_ = top;
    const auto count = static_cast<std::size_t>(height) + 1;
    changes_.assign(count + 1, 0.0);
    everywhere_ = 0;
}

void ShapeWork::Rows::Add(double y0, double y1, double crossings) {
    const auto count = static_cast<double>(changes_.size() - 1);
    const auto rowOf = [&](double y) { return std::floor(std::clamp(y - top_, -Farthest, Farthest)); };
    const double length = rowOf(y1) - rowOf(y0) + 1, rest = std::fmod(length, count);
    everywhere_ += (length - rest) / count * crossings;
    double first = std::fmod(rowOf(y0), count);
    if (first < 0) first += count;
    const double inside = std::min(rest, count - first);
    AddInside(first, inside, crossings);
    AddInside(0, rest - inside, crossings);
}

double ShapeWork::Rows::Work(double width) const {
    double work = 0;
    ForEach([&](double crossings) { work += crossings * std::min(crossings, width); });
    return work * CrossingWork;
}

double ShapeWork::Rows::Passes() const {
    const auto rows = static_cast<double>(changes_.size() - 1);
    double edges = 0;
    ForEach([&](double crossings) { edges += crossings; });
    return std::min(1 + rows / RowsInAPass + 2 * edges / EdgesInAPass, 1 + rows * PassesForARow);
}

template <typename Function>
void ShapeWork::Rows::ForEach(Function function) const {
    double crossings = everywhere_;
    for (std::size_t row = 0; row + 1 < changes_.size(); ++row) function(crossings += changes_[row]);
}

void ShapeWork::Rows::AddInside(double first, double length, double crossings) {
    if (length <= 0) return;
    changes_[static_cast<std::size_t>(first)] += crossings;
    changes_[static_cast<std::size_t>(first + length)] -= crossings;
}

}  // namespace tessaloom
