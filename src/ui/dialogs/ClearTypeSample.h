#pragma once

#include <QWidget>

#include "platform/Fonts.h"

namespace tessaloom {

/// A line of text as text layers with ClearType smoothing draw it, pixel for pixel.
class ClearTypeSample : public QWidget {
    Q_OBJECT

public:
    explicit ClearTypeSample(Fonts& fonts, QWidget* parent = nullptr);

    QSize sizeHint() const override;

    /// Draws it anew when the settings are others than those shown.
    void Refresh();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Fonts& fonts_;
    ClearTypeSettings shown_;
};

}  // namespace tessaloom
