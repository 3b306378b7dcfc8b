#include "ui/shared/PictureImage.h"

#include <cstddef>
#include <cstdint>

#include "imaging/DIB.h"

namespace tessaloom {

namespace {

const std::uint8_t* RowFromTop(const DIB& picture, int row) {
    return picture.DIBPtr() + static_cast<std::ptrdiff_t>(picture.Height() - 1 - row) * picture.Stride();
}

}  // namespace

void CopyPicture(const DIB& picture, QImage& image) {
    if (!picture.DIBPtr()) {
        image = {};
        return;
    }
    if (image.width() != picture.Width() || image.height() != picture.Height())
        image = QImage(picture.Width(), picture.Height(), QImage::Format_RGB32);
    for (int row = 0; row < picture.Height(); ++row) {
        const std::uint8_t* from = RowFromTop(picture, row);
        auto* to = reinterpret_cast<QRgb*>(image.scanLine(row));
        for (int x = 0; x < picture.Width(); ++x, from += 3) to[x] = qRgb(from[2], from[1], from[0]);
    }
}

QImage ScaledPicture(const DIB& picture, QSize size) {
    QImage image;
    CopyPicture(picture, image);
    if (image.width() <= size.width() && image.height() <= size.height()) return image;
    return image.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

}  // namespace tessaloom
