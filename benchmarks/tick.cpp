// One whole tick with nothing due: of an empty portfolio, and of one with 20 canvases and 4,000 layers, half
// of which have a window from sunrise to sunset. "allocations" counts those of a tick.

#include <benchmark/benchmark.h>

#include "model/AllocationCounter.h"
#include "model/Documents.h"

namespace tessaloom {
using testing::Documents;

namespace {

/// Ten milliseconds, as the main timer has them. Far less time passes in a run than the layers' hour.
constexpr double Step = 0.01;

void GiveWindow(Schedule& schedule) {
    schedule.SetScheduleMode(Schedule::FromStartTo);
    schedule.SetStartMode(Schedule::Sunrise);
    schedule.SetStopMode(Schedule::Sunset);
}

void Fill(Documents& documents) {
    for (int slot = 1; slot <= Portfolio::MaxCanvas; ++slot) {
        Canvas& canvas = documents.Open(slot, 4, 4);
        for (int layer = 1; layer <= Canvas::MaxText; ++layer) {
            Documents::Boxes(canvas, layer, "<Date>", 0, 0, 0).SetRate(3600);
            Documents::Block(canvas, layer, 0, 0, 0, 1, 1).SetRate(3600);
            if (layer % 2) continue;
            GiveWindow(canvas.Text(layer)->Schedule());
            GiveWindow(canvas.Graphic(layer)->Schedule());
        }
    }
}

void Measure(benchmark::State& state, Documents& documents) {
    documents.time.Set(testing::FakeTime::FirstDay, 12, 0, 1);
    documents.Tick(Step);
    documents.Tick(Step);
    const long before = testing::Allocations();
    for (auto step : state) documents.Tick(Step);
    state.counters["allocations"] = benchmark::Counter(static_cast<double>(testing::Allocations() - before),
                                                       benchmark::Counter::kAvgIterations);
}

void EmptyPortfolio(benchmark::State& state) {
    Documents documents;
    Measure(state, documents);
}

void FullPortfolio(benchmark::State& state) {
    Documents documents;
    Fill(documents);
    Measure(state, documents);
}

BENCHMARK(EmptyPortfolio);
BENCHMARK(FullPortfolio)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tessaloom

BENCHMARK_MAIN();
