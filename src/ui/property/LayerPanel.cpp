#include "ui/property/LayerPanel.h"

#include <QMenu>

#include "ui/shared/Workspace.h"

namespace tessaloom {

struct LayerPanel::Parts {
    Workspace& workspace;
};

LayerPanel::LayerPanel(Workspace& workspace, QWidget* parent)
    : QWidget(parent), parts_(new Parts{workspace}) {}

LayerPanel::~LayerPanel() = default;

void LayerPanel::SetAddMenu(QMenu*) {}

}  // namespace tessaloom
