#pragma once

#include <QObject>
#include <QPointer>
#include <array>

#include "model/Portfolio.h"

namespace tessaloom {

class MotionDiff;
class Workspace;

/// Opens and closes the windows of the motion detectors as these ask for it, by a window or a script.
class MotionWindows : public QObject {
    Q_OBJECT

public:
    /// parent: the main window
    MotionWindows(Workspace& workspace, QWidget* parent);

private:
    void Follow();
    void CloseAll();

    Workspace& workspace_;
    QWidget* window_;
    std::array<QPointer<MotionDiff>, Portfolio::MaxFeed> differences_;
};

}  // namespace tessaloom
