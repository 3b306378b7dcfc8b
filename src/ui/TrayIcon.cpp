#include "ui/TrayIcon.h"

#include <QAction>
#include <utility>

#include "ui/ProgramIcon.h"

namespace tessaloom {

namespace {

constexpr int LongestTip = 63;

}  // namespace

TrayIcon::TrayIcon(const QString& tip, std::function<void()> restore, std::function<void()> exit)
    : icon_(ProgramIcon()) {
    icon_.setToolTip(tip.left(LongestTip));
    QAction* restoring = menu_.addAction("&Restore", this, restore);
    restoring->setObjectName("mPopRestore");
    QAction* ending = menu_.addAction("E&xit", this, std::move(exit));
    ending->setObjectName("mPopExit");
    menu_.setDefaultAction(restoring);
    icon_.setContextMenu(&menu_);
    connect(&icon_, &QSystemTrayIcon::activated, this,
            [restore = std::move(restore)](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick) restore();
            });
    icon_.show();
}

TrayIcon::~TrayIcon() = default;

}  // namespace tessaloom
