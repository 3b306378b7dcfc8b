#pragma once

#include "platform/qt/VectorOutline.h"
#include "platform/qt/VectorScene.h"

namespace tessaloom {

/// What drawing one shape takes at most, in about two nanoseconds each: the time that a pixel of the dearest
/// filling (a turned radial gradient) takes.
///
/// Follows the way in which the toolkit draws smooth shapes. A row of pixels keeps the edges that cross it in
/// one list from left to right. The store of edges is small: a shape is gone through once for each few rows
/// that it has room for, and each time every edge that reaches them is followed over all its length. This is
/// what makes drawings of a few kilobytes take minutes.
class ShapeWork {
public:
    /// Of a picture with so many pixels.
    ShapeWork(double width, double height) : width_(width), height_(height) {}

    /// Of a shape that consists of `copies` of this outline, side by side. miterLimit: how far the corners of
    /// lines stick out at most, in line widths.
    double Of(const VectorOutline& outline, const Stretch& stretch, const VectorStyle& style,
              double miterLimit, double copies = 1);

private:
    /// How often the edges of a shape cross each row of pixels.
    class Rows {
    public:
        /// `top` is the shape's; what is taller than the picture is taken as if rows began anew at its end,
        /// since it is not known which of them are seen.
        void Start(double top, double height);

        /// `crossings` in each row from `y0` to `y1`.
        void Add(double y0, double y1, double crossings);

        /// What keeping the lists takes, of at most `width` edges each.
        double Work(double width) const;

        /// How often the shape is gone through.
        double Passes() const;

    private:
        static constexpr double Farthest = 1e12;  // rows; beyond it they are no longer told apart

        template <typename Function>
        void ForEach(Function function) const;
        void AddInside(double first, double length, double crossings);

        double top_ = 0;
        double everywhere_ = 0;
        std::vector<double> changes_;  ///< How many more cross this row than the one above.
    };

    /// The shape in hand, on the screen.
    struct Shape {
        Stretch stretch;
        bool known = true;  ///< Else it may go anywhere.
        double scale = 1;
        bool stroked = false;
        double pen = 0;  ///< The width of its lines, and how far their corners reach.
        double corner = 0;
        double dash = 0;               ///< From dash to dash in its own units; 0: solid lines.
        double width = 0, height = 0;  ///< Of the part that may be seen.
        double copies = 1;
    };

    /// One of its lines as it crosses the rows; one of unknown size crosses all there is.
    struct Line {
        double top = 0, bottom = 0, length = 0;
        double crossings = 0;  ///< Of each row.
        double steps = 0;      ///< From pixel to pixel.
        double ownLength = 0;  ///< In the shape's units.
    };

    struct Sums {
        double length = 0, steps = 0;
        double repeated = 0;  ///< Steps that are gone again in each pass.
        double straight = 0;  ///< Lines.
        double pieces = 0;    ///< Of curves.
        double dashes = 0;
    };

    Shape Place(const VectorOutline& outline, const Stretch& stretch, const VectorStyle& style,
                double miterLimit, double copies);
    Line Draw(const VectorOutline::Line& line, const Shape& shape) const;
    void Add(const VectorOutline::Line& line, const Shape& shape);
    void Stroke(const Line& line, const Shape& shape, double corner);

    double width_, height_;
    Rows rows_;
    Sums sums_;
};

}  // namespace tessaloom
