#include "ui/canvas/CanvasPicture.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include "imaging/DIB.h"

namespace tessaloom {

namespace {

/// One row of blue, green and red bytes to 32-bit pixels. Before the last pixel, four bytes can be read at
/// once.
void ConvertRow(std::uint32_t* to, const std::uint8_t* from, int count) {
    int i = 0;
    for (; i + 1 < count; ++i) {
        std::uint32_t pixel;
        std::memcpy(&pixel, from + std::ptrdiff_t{3} * i, sizeof pixel);
        to[i] = pixel | 0xFF000000u;
    }
    for (; i < count; ++i) {
        const std::uint8_t* pixel = from + std::ptrdiff_t{3} * i;
        to[i] = qRgb(pixel[2], pixel[1], pixel[0]);
    }
}

}  // namespace

QRect CanvasPicture::Touched(const PixelArea& area, QSize canvas, QSize size) {
    const PixelArea there = area.Common(PixelArea::Of(canvas.width(), canvas.height()));
    if (there.Empty()) return {};
    const double x = static_cast<double>(size.width()) / canvas.width();
    const double y = static_cast<double>(size.height()) / canvas.height();
    QRect touched(QPoint(static_cast<int>(std::floor(there.left * x)),
                         static_cast<int>(std::floor((canvas.height() - there.end) * y))),
                  QPoint(static_cast<int>(std::ceil(there.right * x)) - 1,
                         static_cast<int>(std::ceil((canvas.height() - there.first) * y)) - 1));
    // Where pixels are mixed, a neighbour's change shows, too.
    if (size != canvas) {
        const int margin = 1 + static_cast<int>(std::ceil(std::max(x, y)));
        touched.adjust(-margin, -margin, margin, margin);
    }
    return touched & QRect(QPoint(), size);
}

void CanvasPicture::Update(const DIB& picture, QSize size) {
    if (!picture.DIBPtr() || size.isEmpty()) return;
    const QSize canvas(picture.Width(), picture.Height());
    if (shown_.size() != size) shown_ = QImage(size, QImage::Format_RGB32);
    const bool whole = std::exchange(whole_, false) || canvas_ != canvas || convertedSize_ != size;
    canvas_ = canvas;
    convertedSize_ = size;
    const PixelArea area = std::exchange(spoilt_, {});
    const QRect part = Touched(whole ? picture.Whole() : area, canvas, size);
    if (!part.isEmpty() && !shown_.isNull()) Convert(picture, part);
}

void CanvasPicture::Convert(const DIB& picture, const QRect& part) {
    if (shown_.size() == canvas_) {
        for (int row = part.top(); row <= part.bottom(); ++row)
            ConvertRow(reinterpret_cast<std::uint32_t*>(shown_.scanLine(row)) + part.left(),
                       picture.Row(row) + std::ptrdiff_t{3} * part.left(), part.width());
        return;
    }
    const std::ptrdiff_t rowBytes = std::ptrdiff_t{3} * part.width();
    scaled_.resize(static_cast<std::size_t>(rowBytes * part.height()));
    resampler_.Run({.pixels = scaled_.data(),
                    .rowStep = rowBytes,
                    .fullWidth = shown_.width(),
                    .fullHeight = shown_.height(),
                    .left = part.left(),
                    .top = part.top(),
                    .width = part.width(),
                    .height = part.height()},
                   {picture.Row(0), -picture.Stride(), picture.Width(), picture.Height()});
    for (int row = 0; row < part.height(); ++row)
        ConvertRow(reinterpret_cast<std::uint32_t*>(shown_.scanLine(part.top() + row)) + part.left(),
                   scaled_.data() + rowBytes * row, part.width());
}

}  // namespace tessaloom
