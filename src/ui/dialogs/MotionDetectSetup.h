#pragma once

#include "ui/shared/SetupWindow.h"

class QCheckBox;

namespace tessaloom {

class MotionDetect;
class PropertyForm;

/// The motion detection of one feed: its settings beside what it sees.
class MotionDetectSetup : public SetupWindow {
    Q_OBJECT

public:
    /// feed: its slot, 0 .. 9
    MotionDetectSetup(Workspace& workspace, int feed, QWidget* parent);

    static QString NameOf(int feed) { return QString("MotionDetectSetup%1").arg(feed); }

protected:
    void Restore() override;

private:
    MotionDetect* Motion() const;
    void Refresh();

    const int feed_;
    const bool hadSource_;  ///< The window closes when the feed is removed.
    PropertyForm* form_;
    QCheckBox* difference_;
};

}  // namespace tessaloom
