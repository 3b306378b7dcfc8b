#include "ui/dialogs/MotionDetectSetup.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "core/Log.h"
#include "model/edit/Feeds.h"
#include "model/edit/PropertySet.h"
#include "ui/dialogs/MotionPane.h"
#include "ui/dialogs/Setups.h"
#include "ui/dialogs/Wording.h"
#include "ui/property/PropertyForm.h"
#include "ui/shared/Workspace.h"
#include "video/VideoFeed.h"

namespace tessaloom {

MotionDetectSetup::MotionDetectSetup(Workspace& workspace, int feed, QWidget* parent)
    : SetupWindow(workspace, NameOf(feed), {}, parent),
      feed_(feed),
      hadSource_(workspace.Portfolio() && !Feeds::IsFree(*workspace.Portfolio(), feed)),
      form_(new PropertyForm(workspace)),
      difference_(new QCheckBox("&Keep the difference picture in a window of its own")) {
    difference_->setObjectName("showDiffFrame");
    connect(difference_, &QCheckBox::toggled, this, [this](bool show) {
        if (MotionDetect* motion = Motion()) motion->SetShowDiffFrameImage(show);
    });
    auto* settings = new QVBoxLayout;
    settings->addWidget(form_, 1);
    settings->addWidget(difference_);
    auto* sides = new QHBoxLayout;
    sides->addLayout(settings, 2);
    sides->addWidget(new MotionPane(workspace, feed), 3);
    Contents()->addLayout(sides);
    if (Portfolio* portfolio = workspace.Portfolio()) form_->Show(PropertySets::Motion(*portfolio, feed));
    connect(&workspace, &Workspace::Pulse, this, &MotionDetectSetup::Refresh);
    Refresh();
    const QFontMetrics font = fontMetrics();
    resize(font.averageCharWidth() * 155, font.height() * 40);
}

MotionDetect* MotionDetectSetup::Motion() const {
    Portfolio* portfolio = TheWorkspace().Portfolio();
    return portfolio ? &portfolio->VideoFeed(feed_).MotionDetect() : nullptr;
}

void MotionDetectSetup::Refresh() {
    const MotionDetect* motion = Motion();
    if (!motion) return;
    if (hadSource_ && Feeds::IsFree(*TheWorkspace().Portfolio(), feed_)) return accept();
    const std::string& name = TheWorkspace().Portfolio()->VideoFeed(feed_).FeedName();
    const QString title = "Motion Detect Setup: " + Wording::Words(MaskSecrets(name));
    if (title != windowTitle()) setWindowTitle(title);
    const QSignalBlocker quiet(difference_);
    difference_->setChecked(motion->ShowDiffFrameImage());
}

void MotionDetectSetup::Restore() { form_->Restore(); }

void ShowMotionDetectSetup(Workspace& workspace, QWidget* parent, int feed) {
    SetupWindow::ShowOnly(MotionDetectSetup::NameOf(feed),
                          [&] { return new MotionDetectSetup(workspace, feed, parent); });
}

}  // namespace tessaloom
