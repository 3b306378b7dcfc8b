#pragma once

#include <QWidget>

namespace tessaloom {

class MotionPane;
class Workspace;

/// The window of one feed's difference picture. Closing it clears the detector's `ShowDiffFrameImage`.
class MotionDiff : public QWidget {
    Q_OBJECT

public:
    /// feed: its slot, 0 .. 9
    MotionDiff(Workspace& workspace, int feed, QWidget* parent);

    /// Follows the detector: caption and graph.
    void Refresh();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    Workspace& workspace_;
    const int feed_;
    MotionPane* pane_;
};

}  // namespace tessaloom
