#include "model/AllocationCounter.h"
#include "model/Documents.h"

namespace tessaloom::testing {
namespace {

TEST(IdleTick, AllocatesNothingWhileNothingIsDue) {
    Documents documents;
    documents.time.Set(FakeTime::FirstDay, 12, 0, 1);
    for (int slot = 1; slot <= Portfolio::MaxCanvas; ++slot) {
        Canvas& canvas = documents.Open(slot, 4, 4);
        for (int layer = 1; layer <= Canvas::MaxText; ++layer) {
            Documents::Boxes(canvas, layer, "<Date>", 0, 0, 0).SetRate(3600);
            Documents::Block(canvas, layer, 0, 0, 0, 1, 1).SetRate(3600);
            if (layer % 2) continue;
            canvas.Text(layer)->Schedule().SetScheduleMode(Schedule::FromStartTo);
            canvas.Text(layer)->Schedule().SetStartMode(Schedule::Sunrise);
            canvas.Text(layer)->Schedule().SetStopMode(Schedule::Sunset);
        }
    }
    documents.Tick();
    documents.Tick();
    const long before = Allocations();
    for (int i = 0; i < 100; ++i) documents.Tick();
    EXPECT_EQ(Allocations(), before);
}

}  // namespace
}  // namespace tessaloom::testing
