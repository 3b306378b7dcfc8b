#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "model/edit/LayerNames.h"

namespace tessaloom {

class Canvas;
class Portfolio;
struct CanvasChange;

/// What was done to one canvas, to be undone and done again without limit.
///
/// A step holds the texts of exactly those keys and layers that differed before and after it, so that undoing
/// it leaves alone what others (scripts, ticks) changed meanwhile. Running numbers are no part of it.
class History {
public:
    /// Names the canvas by its slot, 1 .. 20. Must not outlive `portfolio`.
    History(Portfolio& portfolio, int canvas);
    ~History();
    History(const History&) = delete;
    History& operator=(const History&) = delete;

    /// Begins a step called `name` ("Move", "Change opacity"). Steps that follow each other with the same
    /// `mergeKey`, unless it is empty, become one, where they only change values. Within a step that is under
    /// way, only the outermost counts.
    void Begin(std::string_view name, std::string_view mergeKey = {});

    /// Ends it. Nothing is recorded when nothing changed.
    void End();

    /// Ends it and puts back what it changed; of a step within another one, nothing.
    void Cancel();

    /// Within a step: layers have exchanged their names.
    void Renamed(LayerNames names);

    /// The next step is not merged with the last one.
    void Seal();

    bool CanUndo() const;
    bool CanRedo() const;
    std::string UndoName() const;  ///< "" when there is nothing to undo.
    std::string RedoName() const;
    void Undo();
    void Redo();

    /// The number of the state that the steps have led to, 0 at first: while it is the same again, they have
    /// left the canvas as it was then.
    int Position() const;

    /// Called after every step that was recorded, undone or redone.
    void OnChanged(std::function<void()> changed) { changed_ = std::move(changed); }

    /// Called when layers have exchanged their names, also by undoing that.
    void OnRenamed(std::function<void(const LayerNames&)> renamed) { renamed_ = std::move(renamed); }

private:
    struct Record;
    struct Step;

    Canvas* TheCanvas() const;  ///< Null while the slot is not in use.
    void Keep(CanvasChange change);
    void Moved();
    void TellBack(const std::vector<LayerNames>& names);

    Portfolio& portfolio_;
    const int canvas_;
    std::function<void()> changed_;
    std::function<void(const LayerNames&)> renamed_;
    std::unique_ptr<Record> before_;  ///< While a step is under way.
    std::vector<LayerNames> names_;   ///< Of that step, one after the other.
    int depth_ = 0;
    std::string name_, mergeKey_;
    std::vector<std::unique_ptr<Step>> steps_;
    std::size_t done_ = 0;  ///< Steps that are not undone.
    bool sealed_ = false;
    int lastNumber_ = 0;
};

/// A step for as long as it lives.
class HistoryStep {
public:
    /// history: null records nothing.
    HistoryStep(History* history, std::string_view name, std::string_view mergeKey = {}) : history_(history) {
        if (history_) history_->Begin(name, mergeKey);
    }
    ~HistoryStep() {
        if (history_) history_->End();
    }
    HistoryStep(const HistoryStep&) = delete;
    HistoryStep& operator=(const HistoryStep&) = delete;

private:
    History* history_;
};

}  // namespace tessaloom
