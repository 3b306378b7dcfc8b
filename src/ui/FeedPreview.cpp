#include "ui/FeedPreview.h"

#include <QPainter>
#include <cstring>

#include "ui/shared/Workspace.h"
#include "video/VideoFeed.h"

namespace tessaloom {

namespace {

/// Rows of 24-bit bitmaps are padded to whole double words.
int RowBytes(int width) { return (width * 3 + 3) / 4 * 4; }

}  // namespace

FeedPreview::FeedPreview(Workspace& workspace, QWidget* parent) : QWidget(parent), workspace_(workspace) {
    setObjectName("Preview");
    setAccessibleName("Preview of video feeds");
    connect(&workspace_, &Workspace::Pulse, this, [this] {
        if (picture_.isNull() || FeedSize().isValid()) return;
        picture_ = {};
        update();
    });
}

QSize FeedPreview::FeedSize() const {
    const Portfolio* portfolio = workspace_.Portfolio();
    for (int slot = 0; portfolio && slot < Portfolio::MaxFeed; ++slot) {
        const VideoFeed& feed = portfolio->VideoFeed(slot);
        if (feed.Enabled() && feed.ShowPreview())
            return feed.Width() > 0 ? QSize(feed.Width(), feed.Height()) : QSize(4, 3);
    }
    return {};
}

PreviewSize FeedPreview::Size() const {
    if (!isVisible() || visibleRegion().isEmpty() || window()->isMinimized()) return {};
    const QSize pixels =
        FeedSize().scaled((QSizeF(size()) * devicePixelRatioF()).toSize(), Qt::KeepAspectRatio);
    return pixels.isEmpty() ? PreviewSize{} : PreviewSize{pixels.width(), pixels.height()};
}

void FeedPreview::Draw(const std::uint8_t* rows, PreviewSize size) {
    if (picture_.size() != QSize(size.width, size.height))
        picture_ = QImage(size.width, size.height, QImage::Format_BGR888);
    for (int row = 0; row < size.height; ++row)
        std::memcpy(picture_.scanLine(size.height - 1 - row),
                    rows + static_cast<std::ptrdiff_t>(row) * RowBytes(size.width),
                    static_cast<std::size_t>(size.width) * 3);
    update();
}

QSize FeedPreview::sizeHint() const {
    const int unit = fontMetrics().height();
    return {16 * unit, 12 * unit};
}

void FeedPreview::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (picture_.isNull()) {
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap,
                         "No feed is previewed.\nChoose one under Setup, Video Feeds.");
        return;
    }
    QRect place(QPoint(), picture_.size().scaled(size(), Qt::KeepAspectRatio));
    place.moveCenter(rect().center());
    painter.drawImage(place, picture_);
}

}  // namespace tessaloom
