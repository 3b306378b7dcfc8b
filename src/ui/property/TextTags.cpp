#include "ui/property/TextTags.h"

#include "ui/shared/SetupWindow.h"

namespace tessaloom {

void ShowTextTags(Workspace& workspace, QWidget* parent) {
    SetupWindow::ShowOnly("frmTextTags",
                          [&] { return new SetupWindow(workspace, "frmTextTags", "Text Tags", parent); });
}

}  // namespace tessaloom
