#include "platform/qt/VectorOutline.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "platform/qt/NumberReader.h"

namespace tessaloom {

namespace {

using Point = VectorOutline::Point;

Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }

double Triangle(Point a, Point b, Point c) {
    const Point u = b - a, v = c - a;
    return std::abs(u.x * v.y - u.y * v.x) / 2;
}

Point Middle(Point a, Point b) { return {(a.x + b.x) / 2, (a.y + b.y) / 2}; }

double Distance(Point a, Point b) { return std::hypot(b.x - a.x, b.y - a.y); }

/// How far `point` is from the line through `from` and `to`, or from `from` where these are the same.
double FromChord(Point from, Point to, Point point) {
    const double chord = Distance(from, to);
    return chord == 0 ? Distance(from, point) : 2 * Triangle(from, to, point) / chord;
}

/// Collects an outline. What its subpaths fill lies within the triangles between their first point and each
/// line, and within the hulls of their curves.
class Builder {
public:
    void MoveTo(Point to) {
        Close();
        first_ = at_ = to;
    }
    void LineTo(Point to, double curve = 0, double bend = 0) {
        outline_.lines.push_back({at_, to, static_cast<float>(curve), static_cast<float>(bend)});
        outline_.area += Triangle(first_, at_, to);
        at_ = to;
    }
    void CurveTo(Point one, Point two, Point to) {
        // The halves' control points lie nearer to the curve.
        const Point left = Middle(at_, one), between = Middle(one, two), right = Middle(two, to);
        const Point beforeMiddle = Middle(left, between), behindMiddle = Middle(between, right);
        AddHull(left, beforeMiddle, Middle(beforeMiddle, behindMiddle));
        AddHull(behindMiddle, right, to);
    }
    /// As the toolkit draws it: in curves of a quarter of an ellipse or less.
    void ArcTo(Point radii, double degrees, bool large, bool sweep, Point to) {
        if (radii.x == 0 || radii.y == 0) return LineTo(to);
        const Turn turn(degrees);
        // Where the ellipse is the unit circle, and no smaller than the chord asks for.
        const auto onCircle = [&](Point p) {
            const Point turned = turn.Back(p);
            return Point{turned.x / radii.x, turned.y / radii.y};
        };
        const Point chord = onCircle(to - at_);
        const double half = std::hypot(chord.x, chord.y) / 2;
        if (half == 0) return;
        const double growth = std::max(half, 1.0);
        const double height = std::sqrt(std::max(growth * growth - half * half, 0.0)) / (2 * half);
        const double side = large == sweep ? -height : height;  // to the left of the chord
        // From the beginning; circles of that radius about it go through both ends.
        const Point centre{chord.x / 2 - side * chord.y, chord.y / 2 + side * chord.x};
        const double begin = std::atan2(-centre.y, -centre.x);
        double angle = std::atan2(chord.y - centre.y, chord.x - centre.x) - begin;
        if (sweep && angle < 0) angle += 2 * std::numbers::pi;
        if (!sweep && angle > 0) angle -= 2 * std::numbers::pi;
        const Point start = at_;
        const int quarters = static_cast<int>(std::ceil(std::abs(angle) / (std::numbers::pi / 2) - 1e-9));
        const double part = angle / quarters, reach = 4.0 / 3 * std::tan(part / 4);
        const auto place = [&](double x, double y) {
            return start + turn.Forth({(centre.x + growth * x) * radii.x, (centre.y + growth * y) * radii.y});
        };
        for (int i = 0; i < quarters; ++i) {
            const double from = begin + i * part, until = from + part;
            CurveTo(
                place(std::cos(from) - reach * std::sin(from), std::sin(from) + reach * std::cos(from)),
                place(std::cos(until) + reach * std::sin(until), std::sin(until) - reach * std::cos(until)),
                i + 1 == quarters ? to : place(std::cos(until), std::sin(until)));
        }
    }
    /// Back to the subpath's beginning, as filling does even where no stroke goes.
    void Close() {
        if (at_.x != first_.x || at_.y != first_.y) LineTo(first_);
    }

    /// The toolkit draws 32,767 ends of lines and points of curves; a curve has three, and is six lines here.
    static constexpr std::size_t Most = std::size_t{2} * 32'767;
    bool IsTooLong() const { return outline_.lines.size() > Most; }

    Point At() const { return at_; }
    VectorOutline& Outline() { return outline_; }

private:
    void AddHull(Point one, Point two, Point to) {
        // The hull of four points lies within the triangles that three of them make.
        outline_.area += Triangle(at_, one, two) + Triangle(one, two, to) + Triangle(at_, one, to) +
                         Triangle(at_, two, to) + Triangle(first_, at_, to);
        const double curve = Distance(at_, one) + Distance(one, two) + Distance(two, to);
        const double bend = std::max(FromChord(at_, to, one), FromChord(at_, to, two));
        const bool sharp = 3 * Distance(at_, to) < curve;
        for (const Point& corner : {one, two, to}) {
            outline_.lines.push_back(
                {at_, corner, static_cast<float>(curve), static_cast<float>(bend), sharp});
            at_ = corner;
        }
    }

    struct Turn {
        explicit Turn(double degrees)
            : cosine(std::cos(degrees * std::numbers::pi / 180)),
              sine(std::sin(degrees * std::numbers::pi / 180)) {}
        Point Forth(Point p) const { return {p.x * cosine - p.y * sine, p.x * sine + p.y * cosine}; }
        Point Back(Point p) const { return {p.x * cosine + p.y * sine, p.y * cosine - p.x * sine}; }
        double cosine, sine;
    };

    VectorOutline outline_;
    Point first_, at_;
};

char Lower(char letter) { return static_cast<char>(letter | 0x20); }

/// Draws the commands of a path one after the other.
class PathReader {
public:
    explicit PathReader(std::string_view data) : numbers_(data) {}

    /// False where the path is broken; what came before it stays.
    bool Read(Builder& to) {
        while (!numbers_.AtEnd() && !to.IsTooLong()) {
            const char next = numbers_.Peek();
            if ((next >= 'A' && next <= 'Z') || (next >= 'a' && next <= 'z')) {
                command_ = next;
                numbers_.Skip();
                if (!Step(to)) return false;
            } else if (command_ == 0 || Lower(command_) == 'z' || !Step(to)) {
                return false;
            }
        }
        return true;
    }

private:
    bool Step(Builder& to) {
        const Point at = to.At();
        const char kind = Lower(command_);
        Point end = at;
        switch (kind) {
            case 'z':
                to.Close();
                break;
            case 'm':
                if (!Read(at, end)) return false;
                to.MoveTo(end);
                command_ = command_ == 'm' ? 'l' : 'L';  // further points are lines
                break;
            case 'h':
            case 'v':
                if (!ReadOne(kind == 'h' ? end.x : end.y)) return false;
                to.LineTo(end);
                break;
            case 'l':
                if (!Read(at, end)) return false;
                to.LineTo(end);
                break;
            case 'c':
            case 's':
            case 'q':
            case 't':
                return Curve(to, kind);
            case 'a':
                return Arc(to);
            default:
                return false;
        }
        control_ = to.At();
        curve_ = 0;
        return true;
    }

    /// "s" and "t" go on from the curve before in its direction; a curve with one control point is one with
    /// that point twice.
    bool Curve(Builder& to, char kind) {
        const Point at = to.At();
        const bool smooth = kind == 's' || kind == 't';
        const char family = kind == 'c' || kind == 's' ? 'c' : 'q';
        Point one = smooth && curve_ == family ? at + (at - control_) : at;
        if (!smooth && !Read(at, one)) return false;
        Point two = one, end;
        if ((family == 'c' && !Read(at, two)) || !Read(at, end)) return false;
        to.CurveTo(one, two, end);
        control_ = two;
        curve_ = family;
        return true;
    }

    bool Arc(Builder& to) {
        const auto width = numbers_.Next(), height = numbers_.Next(), degrees = numbers_.Next();
        const auto large = numbers_.NextFlag(), sweep = numbers_.NextFlag();
        Point end;
        if (!width || !height || !degrees || !large || !sweep || !Read(to.At(), end)) return false;
        to.ArcTo({std::abs(*width), std::abs(*height)}, *degrees, *large, *sweep, end);
        curve_ = 0;
        return true;
    }

    bool Relative() const { return command_ >= 'a'; }

    bool Read(Point at, Point& point) {
        const auto x = numbers_.Next(), y = numbers_.Next();
        if (!x || !y) return false;
        point = Relative() ? at + Point{*x, *y} : Point{*x, *y};
        return true;
    }

    bool ReadOne(double& coordinate) {
        const auto value = numbers_.Next();
        if (value) coordinate = Relative() ? coordinate + *value : *value;
        return value.has_value();
    }

    NumberReader numbers_;
    char command_ = 0;
    char curve_ = 0;  ///< 'c' or 'q' after a curve with two control points or with one.
    Point control_;   ///< The last one of that curve.
};

/// How many pixels the unit at the beginning of `text` is at most.
double PixelsOfUnit(std::string_view text) {
    constexpr std::pair<std::string_view, double> Units[] = {
        {"px", 1  },
        {"pt", 2  },
        {"pc", 16 },
        {"mm", 4  },
        {"cm", 40 },
        {"in", 100}
    };
    for (const auto& [name, pixels] : Units)
        if (text.starts_with(name)) return pixels;
    const bool other = !text.empty() && (text[0] == '%' || (Lower(text[0]) >= 'a' && Lower(text[0]) <= 'z'));
    return other ? 100 : 1;  // of another length
}

}  // namespace

VectorOutline VectorOutline::OfPath(std::string_view data) {
    Builder builder;
    const bool whole = PathReader(data).Read(builder);
    builder.Close();
    VectorOutline& outline = builder.Outline();
    outline.understood = whole;
    outline.cut = builder.IsTooLong();
    // Whoever draws it may understand more of it: two numbers and their commas make a line.
    const std::size_t most = std::min(data.size() / 4, Builder::Most);
    if (!whole) outline.lines.resize(std::max(outline.lines.size(), most));
    return std::move(outline);
}

VectorOutline VectorOutline::OfPoints(std::string_view points) {
    NumberReader numbers(points);
    Builder builder;
    bool first = true;
    for (auto x = numbers.Next(), y = numbers.Next(); x && y; x = numbers.Next(), y = numbers.Next()) {
        first ? builder.MoveTo({*x, *y}) : builder.LineTo({*x, *y});
        first = false;
    }
    builder.Close();
    VectorOutline& outline = builder.Outline();
    outline.understood = numbers.AtEnd();
    if (!outline.understood) outline.lines.resize(std::max(outline.lines.size(), points.size() / 4));
    return std::move(outline);
}

VectorOutline VectorOutline::OfBox(double width, double height, bool curved) {
    Builder builder;
    // Each side goes with one curve, a quarter of an ellipse.
    const double curve = curved ? width + height : 0;
    for (const Point& corner : {
             Point{width, 0     },
             {width, height},
             {0,     height},
             {0,     0     }
    })
        builder.LineTo(corner, curve, curve / 6);
    return std::move(builder.Outline());
}

VectorOutline VectorOutline::OfLine(double width, double height) {
    VectorOutline outline;
    outline.lines.push_back({
        {0,     0     },
        {width, height}
    });
    return outline;
}

VectorOutline VectorOutline::OfLetter(double size) {
    constexpr int Curves = 15;
    VectorOutline outline;
    for (int i = 0; i < Curves; ++i) {
        const double top = size * 0.7 * i / Curves;
        outline.lines.push_back({
            {0,         top             },
            {size / 10, top + size * 0.3},
            static_cast<float>(size / 2),
            static_cast<float>(size / 10)
        });
    }
    return outline;
}

double LargestNumber(std::string_view text) {
    double largest = 0;
    for (NumberReader numbers(text); !numbers.AtEnd();) {
        if (const auto value = numbers.Next()) {
            largest = std::max(largest, std::abs(*value) * PixelsOfUnit(numbers.Rest()));
        } else {
            numbers.Skip();
        }
    }
    return largest;
}

double DashPeriod(std::string_view lengths) {
    constexpr double Shortest = 1e-6;
    double sum = 0;
    int count = 0;
    for (NumberReader numbers(lengths); !numbers.AtEnd();) {
        if (const auto value = numbers.Next()) {
            sum += std::abs(*value);
            ++count;
        } else {
            numbers.Skip();
        }
    }
    return count == 0 ? 0 : std::max(2 * sum / count, Shortest);
}

}  // namespace tessaloom
