// Loading and saving a portfolio of 20 canvases on real files. The argument is the number of text layers, and
// of graphic layers, in each canvas: with 100, nearly all keys that a portfolio can have. The time per key
// shall be the same for 50 and 100.

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "benchmarks/Effort.h"
#include "imaging/Graphic.h"
#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "platform/posix/PosixFileSystem.h"
#include "support/TemporaryFolder.h"
#include "support/TestPlatform.h"
#include "text/Text.h"

namespace tessaloom {
namespace {

/// A platform with a file system of its own: nothing of a file is known before it is read.
struct RealFiles : testing::TestPlatform {
    PosixFileSystem posix;
    ProfileFiles profiles{posix};
    Platform services{posix,     profiles, locale,  time,       fonts, pictureLoader,
                      jpegCodec, dialogs,  desktop, mainWindow, timer, urlTransfers};
    Portfolio portfolio{services};
};

class Folder {
public:
    explicit Folder(int layers) : layers_(layers) {
        RealFiles made;
        Fill(made.portfolio);
        Save(made.portfolio);
        for (int slot = 1; slot <= Portfolio::MaxCanvas; ++slot)
            keys_ += CountKeys(made.profiles, CanvasPath(slot));
    }

    double Keys() const { return static_cast<double>(keys_); }
    std::string PortfolioPath() const { return folder_ / "large.por"; }

    /// Makes new layers, each with a text and a place of its own.
    void Fill(Portfolio& portfolio) const {
        portfolio.SetFileName(PortfolioPath());
        for (int slot = 1; slot <= Portfolio::MaxCanvas; ++slot) {
            Canvas& canvas = portfolio.Canvas(slot);
            canvas.SetFileName(CanvasPath(slot));
            canvas.SetEnabled(true);
            for (int layer = 1; layer <= layers_; ++layer) {
                canvas.AddText(layer)->SetValue("Layer " + std::to_string(layer) + ": <TimeHH>:<TimeMM>");
                canvas.Text(layer)->Setx(layer);
                canvas.AddGraphic(layer)->SetSourceFileName("pictures\\" + std::to_string(layer) + ".jpg");
                canvas.Graphic(layer)->SetY(layer);
            }
        }
    }

    static void Save(Portfolio& portfolio) {
        portfolio.SaveCanvases();
        portfolio.SaveFile();
    }

    void Remove(FileSystem& files) const {
        files.DeleteFile(PortfolioPath());
        for (int slot = 1; slot <= Portfolio::MaxCanvas; ++slot) files.DeleteFile(CanvasPath(slot));
    }

private:
    std::string CanvasPath(int slot) const { return folder_ / (std::to_string(slot) + ".can"); }

    static std::size_t CountKeys(ProfileFiles& profiles, const std::string& path) {
        std::size_t keys = 0;
        for (const ProfileSection& section : profiles.Sections(path))
            keys += profiles.Keys(path, section.name).size();
        return keys;
    }

    testing::TemporaryFolder folder_;
    int layers_;
    std::size_t keys_ = 0;
};

void Finish(benchmark::State& state, const Folder& folder) {
    state.counters["keys"] = folder.Keys();
    state.counters["per_key"] = benchmark::Counter(
        folder.Keys(), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void Load(benchmark::State& state) {
    const Folder folder(static_cast<int>(state.range(0)));
    for (auto step : state) {
        state.PauseTiming();
        auto files = std::make_unique<RealFiles>();
        files->portfolio.SetFileName(folder.PortfolioPath());
        state.ResumeTiming();
        if (!files->portfolio.LoadFile() || files->portfolio.CanvasesOpen() != Portfolio::MaxCanvas)
            state.SkipWithError("not loaded");
        state.PauseTiming();
        files.reset();
        state.ResumeTiming();
    }
    Finish(state, folder);
}

/// Every canvas has changed in one setting.
void SaveChanged(benchmark::State& state) {
    const Folder folder(static_cast<int>(state.range(0)));
    RealFiles files;
    files.portfolio.SetFileName(folder.PortfolioPath());
    files.portfolio.LoadFile();
    int colour = 0;
    for (auto step : state) {
        state.PauseTiming();
        ++colour;
        for (int slot = 1; slot <= Portfolio::MaxCanvas; ++slot)
            files.portfolio.Canvas(slot).SetBackgroundColor(colour);
        state.ResumeTiming();
        Folder::Save(files.portfolio);
        if (files.portfolio.NeedSaving()) state.SkipWithError("not saved");
    }
    Finish(state, folder);
}

/// None of the files is there.
void SaveNew(benchmark::State& state) {
    const Folder folder(static_cast<int>(state.range(0)));
    for (auto step : state) {
        state.PauseTiming();
        auto files = std::make_unique<RealFiles>();
        folder.Remove(files->posix);
        folder.Fill(files->portfolio);
        state.ResumeTiming();
        Folder::Save(files->portfolio);
        if (files->portfolio.NeedSaving()) state.SkipWithError("not saved");
        state.PauseTiming();
        files.reset();
        state.ResumeTiming();
    }
    Finish(state, folder);
}

BENCHMARK(Load)->Arg(50)->Arg(100)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(Effort(2.0, 0.001));
BENCHMARK(SaveChanged)
    ->Arg(50)
    ->Arg(100)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->MinTime(Effort(2.0, 0.001));
BENCHMARK(SaveNew)
    ->Arg(50)
    ->Arg(100)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->MinTime(Effort(2.0, 0.001));

}  // namespace
}  // namespace tessaloom

BENCHMARK_MAIN();
