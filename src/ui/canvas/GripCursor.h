#pragma once

#include <QCursor>

#include "ui/canvas/LayerFrame.h"

namespace tessaloom {

/// The pointer's shape on a grip of a frame that is turned by `angle` degrees.
QCursor GripCursor(const Grip& grip, double angle);

}  // namespace tessaloom
