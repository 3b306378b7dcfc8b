#include "ui/shared/PictureImage.h"

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

QImage ScaledPicture(const DIB& picture, QSize size) {
    const QSize whole(picture.Width(), picture.Height());
    if (!picture.DIBPtr() || whole.isEmpty() || size.isEmpty()) return {};
    const bool fits = whole.width() <= size.width() && whole.height() <= size.height();
    return Resampled(picture, fits ? whole : whole.scaled(size, Qt::KeepAspectRatio).expandedTo({1, 1}));
}

}  // namespace tessaloom
