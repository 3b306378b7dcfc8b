#pragma once

#include <QTimer>
#include <QWidget>
#include <deque>
#include <functional>

namespace tessaloom {

class MotionDetect;

/// The coverage over the last minute, on the logarithmic scale, with the level that triggers. It remembers
/// only while it can be seen.
class MotionGraph : public QWidget {
    Q_OBJECT

public:
    /// find: the detector; null when it has gone
    explicit MotionGraph(std::function<const MotionDetect*()> find, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    struct Sample {
        float coverage;
        bool triggered;
    };

    void Take();
    double Height(double level) const;

    std::function<const MotionDetect*()> find_;
    std::deque<Sample> samples_;  ///< The newest last.
    double lastTrigger_ = 0;
    QTimer timer_;
};

}  // namespace tessaloom
