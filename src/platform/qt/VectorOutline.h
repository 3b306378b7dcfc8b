#pragma once

#include <string_view>
#include <vector>

namespace tessaloom {

/// The outline of one element of a vector picture, as far as the time that drawing it takes depends on it.
/// Everything is in the element's own units and rather too large than too small.
struct VectorOutline {
    struct Point {
        double x = 0, y = 0;
    };
    struct Line {
        Point from, to;
        float curve = 0;     ///< The length of all three lines about this part of a curve; 0: it is none.
        float bend = 0;      ///< How far they lie beside its chord at most.
        bool sharp = false;  ///< Whether it may turn back.
    };

    std::vector<Line> lines;  ///< Curves as the lines from control point to control point, halved.
    double area = 0;          ///< At most so much is filled.
    bool cut = false;         ///< It has more parts than the toolkit draws.
    bool understood = true;   ///< Else the outline may go anywhere; `lines` still tells how often.

    /// The outline of a path; `data` as its attribute "d" has it.
    static VectorOutline OfPath(std::string_view data);

    /// The outline of a polygon, or of a line through these points.
    static VectorOutline OfPoints(std::string_view points);

    /// curved: an ellipse within this box, or a box with round corners.
    static VectorOutline OfBox(double width, double height, bool curved);
    static VectorOutline OfLine(double width, double height);

    /// About that of a rather rich letter, `size` units high.
    static VectorOutline OfLetter(double size);
};

/// The largest of the numbers in `text`, whatever stands between them, and whatever their sign: 0 when there
/// is none. Lengths with a unit are taken in pixels, rather too many; parts of another length as hundredfold.
double LargestNumber(std::string_view text);

/// From dash to dash, on average, in a list of the lengths of dashes and gaps; 0 when it has no numbers.
double DashPeriod(std::string_view lengths);

}  // namespace tessaloom
