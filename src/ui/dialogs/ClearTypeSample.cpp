#include "ui/dialogs/ClearTypeSample.h"

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace tessaloom {

namespace {

constexpr const char* Sample = "Harbour 17.5 °C";
constexpr int PixelHeight = 19;  ///< 14 points, the size of new texts.
constexpr int Margin = 6;        // pixels

std::shared_ptr<Font> SampleFont(Fonts& fonts) {
    return fonts.Create({.faceName = "Arial", .pixelHeight = PixelHeight, .quality = FontQuality::ClearType});
}

int Blend(int below, int above, int coverage) { return below + (above - below) * coverage / 255; }

/// The sample in `text` on `ground`, each colour component by its own coverage.
QImage Draw(Fonts& fonts, QRgb text, QRgb ground) {
    const auto font = SampleFont(fonts);
    const TextExtent extent = font->Measure(Sample);
    const int width = std::max(extent.width, extent.inkRight) + 2 * Margin;
    const int height = extent.height + 2 * Margin;
    std::vector<std::uint8_t> coverage(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                                       3);
    font->Render(Sample, Margin, Margin + extent.ascent, {coverage.data(), width, height, width * 3});
    QImage image(width, height, QImage::Format_RGB32);
    const std::uint8_t* from = coverage.data();
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x, from += 3)
            image.setPixel(
                x, y,
                qRgb(Blend(qRed(ground), qRed(text), from[2]), Blend(qGreen(ground), qGreen(text), from[1]),
                     Blend(qBlue(ground), qBlue(text), from[0])));
    return image;
}

}  // namespace

ClearTypeSample::ClearTypeSample(Fonts& fonts, QWidget* parent)
    : QWidget(parent), fonts_(fonts), shown_(fonts.ClearType()) {
    setObjectName("sample");
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
}

QSize ClearTypeSample::sizeHint() const {
    const TextExtent extent = SampleFont(fonts_)->Measure(Sample);
    const qreal ratio = devicePixelRatioF();
    const QSize pixels(2 * (extent.width + 3 * Margin), extent.height + 2 * Margin);
    return (QSizeF(pixels) / ratio).toSize();
}

void ClearTypeSample::Refresh() {
    if (fonts_.ClearType() == shown_) return;
    shown_ = fonts_.ClearType();
    update();
}

/// Dark on light and light on dark: the contrast works differently on the two.
void ClearTypeSample::paintEvent(QPaintEvent*) {
    const QRgb dark = qRgb(20, 20, 20), light = qRgb(250, 250, 250);
    QPainter painter(this);
    int x = 0;
    for (const auto& [text, ground] : {std::pair(dark, light), std::pair(light, dark)}) {
        QImage image = Draw(fonts_, text, ground);
        image.setDevicePixelRatio(devicePixelRatioF());
        painter.drawImage(QPointF(x / devicePixelRatioF(), 0), image);
        x += image.width() + Margin;
    }
}

}  // namespace tessaloom
