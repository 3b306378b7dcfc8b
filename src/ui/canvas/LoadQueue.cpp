#include "ui/canvas/LoadQueue.h"

#include "imaging/Graphic.h"
#include "model/Canvas.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

LoadQueue::LoadQueue(Workspace& workspace, int canvas) : workspace_(workspace), canvas_(canvas) {
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { LoadNext(); });
}

void LoadQueue::Add(int slot) {
    const Canvas* canvas = workspace_.CanvasAt(canvas_);
    Graphic* const graphic = canvas ? canvas->Graphic(slot) : nullptr;
    if (!graphic) return;
    graphic->Postpone();
    slots_.push_back(slot);
    timer_.start(1);
}

/// The tick has not yet come to the last one.
bool LoadQueue::Loading(const Canvas& canvas) const {
    const Graphic* const graphic = slot_ > 0 ? canvas.Graphic(slot_) : nullptr;
    const LayerTiming& timing = canvas.Timing().Graphic(slot_);
    return graphic && graphic->Enabled() && timing.force && timing.scheduleEnabled;
}

void LoadQueue::LoadNext() {
    const Canvas* canvas = workspace_.CanvasAt(canvas_);
    if (!canvas) slots_.clear();
    if (slots_.empty()) return timer_.stop();
    if (Loading(*canvas)) return;
    slot_ = slots_.front();
    slots_.pop_front();
    if (Graphic* const graphic = canvas->Graphic(slot_)) graphic->ForceUpdate();
}

}  // namespace tessaloom
