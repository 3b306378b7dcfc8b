#include "ui/CanvasForm.h"

#include "model/Canvas.h"
#include "ui/CanvasWindow.h"
#include "ui/Twips.h"
#include "ui/frmMain.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

CanvasForm::CanvasForm(Workspace& workspace, frmMain& frame, Canvas& canvas)
    : workspace_(workspace),
      frame_(&frame),
      window_(new CanvasWindow(workspace, canvas.CanvasIndex())),
      slot_(canvas.CanvasIndex()) {
    frame_->AddCanvasWindow(window_);
}

CanvasForm::~CanvasForm() {
    workspace_.CanvasClosed(slot_);
    if (frame_ && window_) frame_->RemoveCanvasWindow(window_);
}

void CanvasForm::ShowPicture(const DIB& picture) {
    if (window_) window_->ShowPicture(picture);
}

void CanvasForm::CanvasChanged() {
    if (window_) window_->ReadCanvas();
}

/// The window looks at its canvas with the workspace's pulse.
void CanvasForm::ActivitateFormTimer() {}

int CanvasForm::Left() const {
    return window_ ? window_->FramePlace().x() * Twips::PerPixel(Qt::Horizontal) : 0;
}

int CanvasForm::Top() const {
    return window_ ? window_->FramePlace().y() * Twips::PerPixel(Qt::Vertical) : 0;
}

}  // namespace tessaloom
