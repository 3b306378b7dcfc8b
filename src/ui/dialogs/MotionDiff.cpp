#include "ui/dialogs/MotionDiff.h"

#include <QCloseEvent>
#include <QVBoxLayout>

#include "core/Log.h"
#include "ui/dialogs/MotionPane.h"
#include "ui/dialogs/Wording.h"
#include "ui/shared/Workspace.h"
#include "video/VideoFeed.h"

namespace tessaloom {

MotionDiff::MotionDiff(Workspace& workspace, int feed, QWidget* parent)
    : QWidget(parent, Qt::Window),
      workspace_(workspace),
      feed_(feed),
      pane_(new MotionPane(workspace, feed)) {
    setObjectName(QString("MotionDiff%1").arg(feed));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(pane_);
    Refresh();
}

void MotionDiff::Refresh() {
    const Portfolio* portfolio = workspace_.Portfolio();
    if (!portfolio) return;
    const VideoFeed& feed = portfolio->VideoFeed(feed_);
    const QString caption = "Motion Diff: " + Wording::Words(MaskSecrets(feed.FeedName()));
    if (caption != windowTitle()) setWindowTitle(caption);
    pane_->ShowGraph(feed.MotionDetect().ShowDiffImageCoverage());
}

void MotionDiff::closeEvent(QCloseEvent* event) {
    if (Portfolio* portfolio = workspace_.Portfolio())
        portfolio->VideoFeed(feed_).MotionDetect().CloseDiffFrame();
    event->accept();
}

}  // namespace tessaloom
