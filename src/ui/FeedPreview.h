#pragma once

#include <QImage>
#include <QWidget>

#include "platform/MainWindow.h"

namespace tessaloom {

class Workspace;

/// The preview box: the pictures of the feeds that are to be previewed.
class FeedPreview final : public QWidget {
    Q_OBJECT

public:
    explicit FeedPreview(Workspace& workspace, QWidget* parent = nullptr);

    /// 0 x 0 while it cannot be seen; else the largest size with the proportions of the previewed feed.
    PreviewSize Size() const;

    void Draw(const std::uint8_t* rows, PreviewSize size);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// The first previewed feed's; none: no feed is previewed.
    QSize FeedSize() const;

    Workspace& workspace_;
    QImage picture_;
};

}  // namespace tessaloom
