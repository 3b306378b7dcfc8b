#pragma once

#include <vector>

#include "model/edit/LayerId.h"

class QWidget;

namespace tessaloom {

class Workspace;

/// Opens the table of transparent colours of picture layers of canvas `canvas`: ranges picked from a layer's
/// picture under a magnifier, with tolerance and opacity. The last of them is shown; a change makes the
/// tables of the others like its own.
void ShowTransparentColours(Workspace& workspace, QWidget* parent, int canvas, std::vector<LayerId> layers);

}  // namespace tessaloom
