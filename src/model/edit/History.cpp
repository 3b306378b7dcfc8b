#include "model/edit/History.h"

#include "model/Portfolio.h"

namespace tessaloom {

struct History::Record {};
struct History::Step {
    std::string name;
};

History::History(Portfolio& portfolio, int canvas) : portfolio_(portfolio), canvas_(canvas) {}
History::~History() = default;

void History::Begin(std::string_view name, std::string_view mergeKey) {
    if (depth_++ > 0) return;
    name_ = name;
    mergeKey_ = mergeKey;
}
void History::End() {
    if (depth_ > 0) --depth_;
}
void History::Cancel() { End(); }
void History::Seal() { sealed_ = true; }
bool History::CanUndo() const { return done_ > 0; }
bool History::CanRedo() const { return done_ < steps_.size(); }
std::string History::UndoName() const { return CanUndo() ? steps_[done_ - 1]->name : std::string(); }
std::string History::RedoName() const { return CanRedo() ? steps_[done_]->name : std::string(); }
void History::Undo() {}
void History::Redo() {}
int History::Position() const { return static_cast<int>(done_); }

}  // namespace tessaloom
