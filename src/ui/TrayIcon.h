#pragma once

#include <QMenu>
#include <QSystemTrayIcon>
#include <functional>

namespace tessaloom {

/// The icon in the notification area: a click brings the window back, its menu does so, too, or ends the
/// program.
class TrayIcon final : public QObject {
    Q_OBJECT

public:
    /// tip: at most 63 characters are shown.
    TrayIcon(const QString& tip, std::function<void()> restore, std::function<void()> exit);
    ~TrayIcon() override;

    void Hide() { icon_.hide(); }

    /// There is a notification area, so that a window in it can be brought back.
    static bool Available() { return QSystemTrayIcon::isSystemTrayAvailable(); }

private:
    QMenu menu_;
    QSystemTrayIcon icon_;
};

}  // namespace tessaloom
