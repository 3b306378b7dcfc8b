#pragma once

class QWidget;

namespace tessaloom {

class Workspace;

/// Opens the table of transparent colours of graphic layer `slot` of canvas `canvas`: ranges picked from the
/// layer's picture under a magnifier, with tolerance and opacity.
void ShowTransparentColours(Workspace& workspace, QWidget* parent, int canvas, int slot);

}  // namespace tessaloom
