#pragma once

#include <vector>

#include "ui/dialogs/Setups.h"
#include "ui/shared/SetupWindow.h"

class QTabWidget;

namespace tessaloom {

class SetupPage;

/// The properties of one canvas: the canvas itself and its five outputs, a page each.
class CanvasSetup : public SetupWindow {
    Q_OBJECT

public:
    /// canvas: its slot, 1 .. 20
    CanvasSetup(Workspace& workspace, int canvas, QWidget* parent);

    static QString NameOf(int canvas) { return QString("CanvasSetup%1").arg(canvas); }

    void SelectPage(CanvasPage page);

protected:
    void Restore() override;

private:
    void Refresh();

    const int canvas_;
    QTabWidget* tabs_;
    std::vector<SetupPage*> pages_;
};

}  // namespace tessaloom
