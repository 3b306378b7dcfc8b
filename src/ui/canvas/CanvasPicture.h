#pragma once

#include <QImage>
#include <QSize>
#include <vector>

#include "imaging/PixelArea.h"
#include "imaging/Resampler.h"

namespace tessaloom {

class DIB;

/// A canvas's picture in the pixels of the screen, kept between two paintings: only what changed is converted
/// and scaled again.
class CanvasPicture {
public:
    /// Notes that the area differs from what was converted; to be called before `Update`.
    void Spoil(const PixelArea& area) { spoilt_.Include(area); }
    void SpoilAll() { whole_ = true; }

    /// Brings `Shown` up to date with `picture`, scaled to `size` pixels. Nothing for a bitmap without
    /// pixels or an empty size.
    void Update(const DIB& picture, QSize size);

    /// Null before the first `Update`.
    const QImage& Shown() const { return shown_; }

    /// The pixels of a picture of `size` that a change of `area`, of a canvas of `canvas` pixels, touches.
    static QRect Touched(const PixelArea& area, QSize canvas, QSize size);

private:
    void Convert(const DIB& picture, const QRect& part);

    QImage shown_;
    QSize canvas_, convertedSize_;  ///< The sizes that `shown_` was last made for.
    PixelArea spoilt_;
    bool whole_ = true;
    Resampler resampler_;
    std::vector<std::uint8_t> scaled_;  ///< Blue, green, red, the rows one after another, the topmost first.
};

}  // namespace tessaloom
