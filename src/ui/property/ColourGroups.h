#pragma once

#include <QColor>
#include <QImage>
#include <vector>

namespace tessaloom {

class DIB;
class Graphic;

/// A range of transparent colours: a pixel belongs to it when each of its components lies between those of
/// the two colours, widened by the tolerance; of such a pixel `opacity` is kept.
struct ColourGroup {
    QColor first, second;
    int tolerance = 0;  ///< Percent of the full scale.
    int opacity = 0;    ///< Percent; 0 hides the pixel.

    bool operator==(const ColourGroup&) const = default;
};

/// The table of transparent colours of a layer, as the windows have it.
struct ColourGroups {
    bool enabled = false;
    std::vector<ColourGroup> groups;

    bool operator==(const ColourGroups&) const = default;

    static ColourGroups Of(const Graphic& graphic);
    void PutInto(Graphic& graphic) const;

    /// `picture` over a checkerboard, with these colours as they will be on the canvas.
    QImage Result(const DIB& picture) const;
};

/// 0x00BBGGRR and back.
QColor FromEngineColour(int colour);
int ToEngineColour(const QColor& colour);

/// Every n-th pixel of `picture`, so that its sides are at most `width` and `height`; no colours mix.
void TakeSample(const DIB& picture, int width, int height, DIB& sample);

}  // namespace tessaloom
