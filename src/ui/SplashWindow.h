#pragma once

#include <QWidget>

namespace tessaloom {

/// Shown while the program comes up: its picture, name and version.
class SplashWindow final : public QWidget {
    Q_OBJECT

public:
    SplashWindow();

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace tessaloom
