#include "ui/dialogs/MotionWindows.h"

#include <QWidget>

#include "ui/dialogs/MotionDiff.h"
#include "ui/dialogs/Setups.h"
#include "ui/shared/Workspace.h"
#include "video/VideoFeed.h"

namespace tessaloom {

MotionWindows::MotionWindows(Workspace& workspace, QWidget* parent)
    : QObject(parent), workspace_(workspace), window_(parent) {
    connect(&workspace, &Workspace::Pulse, this, &MotionWindows::Follow);
    connect(&workspace, &Workspace::SetupMustClose, this, &MotionWindows::CloseAll);
}

void MotionWindows::Follow() {
    Portfolio* portfolio = workspace_.Portfolio();
    if (!portfolio) return;
    for (int feed = 0; feed < Portfolio::MaxFeed; ++feed) {
        MotionDetect& motion = portfolio->VideoFeed(feed).MotionDetect();
        if (motion.SetupShown()) {
            motion.CloseSetup();
            ShowMotionDetectSetup(workspace_, window_, feed);
        }
        QPointer<MotionDiff>& difference = differences_[static_cast<std::size_t>(feed)];
        if (motion.ShowDiffFrameImage() && !difference) {
            difference = new MotionDiff(workspace_, feed, window_);
            difference->setAttribute(Qt::WA_DeleteOnClose);
            difference->show();
        } else if (difference && !motion.ShowDiffFrameImage()) {
            difference->close();
        } else if (difference) {
            difference->Refresh();
        }
    }
}

void MotionWindows::CloseAll() {
    for (const QPointer<MotionDiff>& difference : differences_)
        if (difference) difference->close();
}

}  // namespace tessaloom
