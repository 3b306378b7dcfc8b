#include "model/edit/History.h"

#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "model/edit/CanvasRecord.h"

namespace tessaloom {

struct History::Record : CanvasRecord {};

struct History::Step {
    std::string name, mergeKey;
    int number = 0;  ///< Another one for each state that the canvas came to.
    CanvasChange change;
};

History::History(Portfolio& portfolio, int canvas) : portfolio_(portfolio), canvas_(canvas) {}
History::~History() = default;

Canvas* History::TheCanvas() const {
    Canvas& canvas = portfolio_.Canvas(canvas_);
    return canvas.Enabled() ? &canvas : nullptr;
}

void History::Begin(std::string_view name, std::string_view mergeKey) {
    if (depth_++ > 0) return;
    name_ = name;
    mergeKey_ = mergeKey;
    before_.reset();
    if (const Canvas* canvas = TheCanvas())
        before_ = std::make_unique<Record>(Record{CanvasRecord::Of(*canvas)});
}

void History::End() {
    if (depth_ == 0 || --depth_ > 0) return;
    const std::unique_ptr<Record> before = std::move(before_);
    const Canvas* const canvas = TheCanvas();
    if (!before || !canvas) return;
    CanvasChange change = CanvasChange::Between(*before, CanvasRecord::Of(*canvas));
    if (change.Empty()) return;
    Keep(std::move(change));
    if (changed_) changed_();
}

void History::Keep(CanvasChange change) {
    steps_.resize(done_);
    Step* const last = steps_.empty() ? nullptr : steps_.back().get();
    const bool merge = last && !sealed_ && !mergeKey_.empty() && last->mergeKey == mergeKey_ &&
                       last->change.KeysOnly() && change.KeysOnly();
    if (merge) {
        last->change.Append(std::move(change));
        last->number = ++lastNumber_;
    } else {
        steps_.push_back(std::make_unique<Step>(Step{name_, mergeKey_, ++lastNumber_, std::move(change)}));
        ++done_;
    }
    sealed_ = false;
}

void History::Cancel() {
    if (depth_ == 0 || --depth_ > 0) return;
    const std::unique_ptr<Record> before = std::move(before_);
    if (Canvas* const canvas = TheCanvas(); canvas && before)
        CanvasChange::Between(*before, CanvasRecord::Of(*canvas))
            .Apply(*canvas, CanvasChange::Direction::Back);
}

void History::Seal() { sealed_ = true; }

bool History::CanUndo() const { return done_ > 0; }
bool History::CanRedo() const { return done_ < steps_.size(); }
std::string History::UndoName() const { return CanUndo() ? steps_[done_ - 1]->name : std::string(); }
std::string History::RedoName() const { return CanRedo() ? steps_[done_]->name : std::string(); }

void History::Undo() {
    Canvas* const canvas = TheCanvas();
    if (!canvas || !CanUndo() || depth_ > 0) return;
    steps_[--done_]->change.Apply(*canvas, CanvasChange::Direction::Back);
    Moved();
}

void History::Redo() {
    Canvas* const canvas = TheCanvas();
    if (!canvas || !CanRedo() || depth_ > 0) return;
    steps_[done_++]->change.Apply(*canvas, CanvasChange::Direction::Forth);
    Moved();
}

void History::Moved() {
    sealed_ = true;
    if (changed_) changed_();
}

int History::Position() const { return done_ == 0 ? 0 : steps_[done_ - 1]->number; }

}  // namespace tessaloom
