#pragma once

class QWidget;

namespace tessaloom {

/// Shows the program's name and version, beside the other windows.
void ShowAboutBox(QWidget* parent);

}  // namespace tessaloom
