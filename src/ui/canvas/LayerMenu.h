#pragma once

#include <span>

#include "model/edit/LayerId.h"

class QMenu;

namespace tessaloom {

class CanvasEditor;
class Workspace;

/// The menu of a canvas's picture: the commands on its layers, and the layers under the pointer, the topmost
/// first. Deletes itself when closed.
QMenu* MakeLayerMenu(CanvasEditor& editor, Workspace& workspace, int canvas, std::span<const LayerId> here);

}  // namespace tessaloom
