#include "model/edit/History.h"

#include <utility>

#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "model/edit/CanvasRecord.h"

namespace tessaloom {

struct History::Record : CanvasRecord {};

struct History::Step {
    std::string name, mergeKey;
    int number = 0;  ///< Another one for each state that the canvas came to.
    CanvasChange change;
    std::vector<LayerNames> names;  ///< What layers were called after each exchange of names.
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
    names_.clear();
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

void History::Renamed(LayerNames names) {
    if (names.empty()) return;
    if (renamed_) renamed_(names);
    names_.push_back(std::move(names));
}

/// Tells the names from before what `names` tells of.
void History::TellBack(const std::vector<LayerNames>& names) {
    if (!renamed_) return;
    for (auto last = names.rbegin(); last != names.rend(); ++last) {
        LayerNames back;
        for (const auto& [before, now] : *last) back[now] = before;
        renamed_(back);
    }
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
        steps_.push_back(std::make_unique<Step>(
            Step{name_, mergeKey_, ++lastNumber_, std::move(change), std::exchange(names_, {})}));
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
    TellBack(std::exchange(names_, {}));
}

void History::Seal() { sealed_ = true; }

bool History::CanUndo() const { return done_ > 0; }
bool History::CanRedo() const { return done_ < steps_.size(); }
std::string History::UndoName() const { return CanUndo() ? steps_[done_ - 1]->name : std::string(); }
std::string History::RedoName() const { return CanRedo() ? steps_[done_]->name : std::string(); }

void History::Undo() {
    Canvas* const canvas = TheCanvas();
    if (!canvas || !CanUndo() || depth_ > 0) return;
    const Step& step = *steps_[--done_];
    const std::vector<LayerNames> names = step.names;  // who is told may take a step that replaces this one
    step.change.Apply(*canvas, CanvasChange::Direction::Back);
    TellBack(names);
    Moved();
}

void History::Redo() {
    Canvas* const canvas = TheCanvas();
    if (!canvas || !CanRedo() || depth_ > 0) return;
    const Step& step = *steps_[done_++];
    const std::vector<LayerNames> names = step.names;
    step.change.Apply(*canvas, CanvasChange::Direction::Forth);
    if (renamed_)
        for (const LayerNames& each : names) renamed_(each);
    Moved();
}

void History::Moved() {
    sealed_ = true;
    if (changed_) changed_();
}

int History::Position() const { return done_ == 0 ? 0 : steps_[done_ - 1]->number; }

}  // namespace tessaloom
