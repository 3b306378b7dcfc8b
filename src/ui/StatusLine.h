#pragma once

#include <QObject>

class QLabel;
class QStatusBar;

namespace tessaloom {

class Workspace;

/// What the status bar says: the load of the ticks, the feeds' frames per second, the last publication and
/// its result, and the publication that is due next.
class StatusLine final : public QObject {
    Q_OBJECT

public:
    StatusLine(Workspace& workspace, QStatusBar* bar);

private:
    void Refresh();
    QString Load();
    QString Feeds() const;

    Workspace& workspace_;
    QLabel *load_, *feeds_, *last_, *next_;
    double milliseconds_ = 0;  ///< The work of a tick, evened out.
};

}  // namespace tessaloom
