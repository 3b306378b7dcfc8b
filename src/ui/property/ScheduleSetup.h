#pragma once

#include <functional>
#include <string>
#include <vector>

class QWidget;

namespace tessaloom {

class Schedule;
class Workspace;

/// Looks up schedules that are set together; null stands for one that has gone.
using FindSchedules = std::function<std::vector<Schedule*>()>;

/// Opens `frmScheduler` ("Schedule Setup") for schedules, which `find` looks up at each use. The last of them
/// is shown; a change makes the others like it.
///
/// name: of what is scheduled, shown in the window ("Text 3 of Harbour"). canvas: the canvas whose history
/// records it, 0 for none.
void ShowScheduleSetup(Workspace& workspace, QWidget* parent, const std::string& name, int canvas,
                       FindSchedules find);

}  // namespace tessaloom
