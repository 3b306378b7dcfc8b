#pragma once

#include <QPointer>

#include "model/CanvasView.h"

namespace tessaloom {

class Canvas;
class CanvasWindow;
class Workspace;
class frmMain;

/// The canvas's end of its child window, which the frame owns. The window goes with it.
class CanvasForm final : public CanvasView {
public:
    /// workspace, frame: outlive this object, unless the program is being taken down.
    CanvasForm(Workspace& workspace, frmMain& frame, Canvas& canvas);
    ~CanvasForm() override;

    void ShowPicture(const DIB& picture) override;
    void CanvasChanged() override;
    void ActivitateFormTimer() override;
    int Left() const override;
    int Top() const override;

private:
    Workspace& workspace_;
    QPointer<frmMain> frame_;
    QPointer<CanvasWindow> window_;
    const int slot_;
};

}  // namespace tessaloom
