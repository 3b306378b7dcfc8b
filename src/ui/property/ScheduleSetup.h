#pragma once

#include <functional>
#include <string>

class QWidget;

namespace tessaloom {

class Schedule;
class Workspace;

/// Opens `frmScheduler` ("Schedule Setup") for a schedule, which `find` looks up at each use (null when it
/// has gone).
///
/// name: of what is scheduled, shown in the window ("Text 3 of Harbour"). canvas: the canvas whose history
/// records it, 0 for none.
void ShowScheduleSetup(Workspace& workspace, QWidget* parent, const std::string& name, int canvas,
                       std::function<Schedule*()> find);

}  // namespace tessaloom
