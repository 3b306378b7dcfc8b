#include "ui/shared/PictureImage.h"

#include <cstdint>

#include "imaging/DIB.h"
#include "imaging/Resampler.h"

namespace tessaloom {

namespace {

QImage Resampled(const DIB& picture, QSize size) {
    QImage image(size, QImage::Format_BGR888);
    if (image.isNull()) return image;
    Resampler resampler;
    resampler.Run({.pixels = image.bits(),
                   .rowStep = image.bytesPerLine(),
                   .fullWidth = size.width(),
                   .fullHeight = size.height(),
                   .left = 0,
                   .top = 0,
                   .width = size.width(),
                   .height = size.height()},
                  {picture.Row(0), -picture.Stride(), picture.Width(), picture.Height()});
    return image;
}

}  // namespace

void CopyPicture(const DIB& picture, QImage& image) {
    if (!picture.DIBPtr()) {
        image = {};
        return;
    }
    if (image.size() != QSize(picture.Width(), picture.Height()))
        image = QImage(picture.Width(), picture.Height(), QImage::Format_RGB32);
    for (int row = 0; row < picture.Height(); ++row) {
        const std::uint8_t* from = picture.Row(row);
        auto* to = reinterpret_cast<QRgb*>(image.scanLine(row));
        for (int x = 0; x < picture.Width(); ++x, from += 3) to[x] = qRgb(from[2], from[1], from[0]);
    }
}

QImage ScaledPicture(const DIB& picture, QSize size) {
    const QSize whole(picture.Width(), picture.Height());
    if (!picture.DIBPtr() || whole.isEmpty() || size.isEmpty()) return {};
    const bool fits = whole.width() <= size.width() && whole.height() <= size.height();
    return Resampled(picture, fits ? whole : whole.scaled(size, Qt::KeepAspectRatio).expandedTo({1, 1}));
}

}  // namespace tessaloom
