#pragma once

#include "imaging/DIB.h"
#include "imaging/LayerHost.h"
#include "support/PropertyTable.h"

namespace tessaloom::testing {

/// A canvas as its layers see it: notes what they tell it.
class FakeLayerHost final : public LayerHost {
public:
    void SettingChanged() override { owner.SettingChanged(); }
    double Now() const override { return now; }
    int CanvasIndex() const override { return canvasIndex; }
    void PassChanged(int pass) override { passes.push_back(pass); }
    const DIB* CanvasPicture(int canvas) const override { return Find(canvases, canvas); }
    std::shared_ptr<const DIB> FeedFrame(int feed) const override {
        const DIB* const found = Find(feeds, feed);
        if (!found) return nullptr;
        const auto frame = std::make_shared<DIB>();
        frame->CopyFrom(*found);
        return frame;
    }
    void ScheduleStateChanged() override { ++scheduleChanges; }

    /// The passes marked since the last call, in order.
    std::vector<int> TakePasses() { return std::exchange(passes, {}); }

    CountingOwner owner;
    double now = 46037.5;  ///< 2026-01-15 12:00:00
    int canvasIndex = 1;
    std::vector<int> passes;
    int scheduleChanges = 0;
    std::map<int, const DIB*> canvases, feeds;

private:
    static const DIB* Find(const std::map<int, const DIB*>& pictures, int slot) {
        const auto found = pictures.find(slot);
        return found == pictures.end() ? nullptr : found->second;
    }
};

}  // namespace tessaloom::testing
