#pragma once

#include <QObject>
#include <QStringList>

#include "core/Log.h"

class QLabel;
class QStatusBar;

namespace tessaloom {

class Workspace;

/// What the status bar says: the load of the ticks, the feeds' frames per second, the last publication and
/// its result, the publication that is due next, and for a while each warning of the log.
class StatusLine final : public QObject {
    Q_OBJECT

public:
    StatusLine(Workspace& workspace, QStatusBar* bar);
    ~StatusLine() override;

private:
    void Warn(const QString& text);
    void Refresh();
    QString Load();
    QString Feeds() const;

    Workspace& workspace_;
    QLabel *load_, *feeds_, *last_, *next_, *warning_;
    LogSink log_;              ///< Where the log went before this listened to it.
    QStringList warnings_;     ///< Those of the last while, newest first.
    int warningPulses_ = 0;    ///< For which the warning is still shown.
    double milliseconds_ = 0;  ///< The work of a tick, evened out.
};

}  // namespace tessaloom
