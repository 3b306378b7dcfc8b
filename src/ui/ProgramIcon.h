#pragma once

#include <QIcon>

class QPainter;
class QRect;

namespace tessaloom {

/// The program's picture, as packaging/tessaloom.svg has it: ribbons woven over and under one another.
void PaintProgramIcon(QPainter& painter, const QRect& place);

/// The same in the sizes that windows and the tray ask for.
QIcon ProgramIcon();

}  // namespace tessaloom
