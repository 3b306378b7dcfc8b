#pragma once

#include <QWidget>
#include <array>
#include <functional>

class QLabel;

namespace tessaloom {

class MotionGraph;
class MotionHistogram;
class VideoFeed;
class Workspace;

/// What a motion detector sees: the difference picture, its histogram, the coverage over time, and the
/// figures.
class MotionPane : public QWidget {
    Q_OBJECT

public:
    /// feed: its slot, 0 .. 9
    MotionPane(Workspace& workspace, int feed, QWidget* parent = nullptr);

    /// The graph of the coverage.
    void ShowGraph(bool show);

private:
    static constexpr std::size_t Figures = 5;

    VideoFeed* Feed() const;
    void Refresh();

    Workspace& workspace_;
    const int feed_;
    MotionGraph* graph_;
    std::array<QLabel*, Figures> figures_{};
    QLabel* last_;
};

}  // namespace tessaloom
