// Days of the demo in ticks of 10 ms, with saves and series on: how much faster than real time they run,
// whether memory stays flat, and whether exactly the files are written that the timetables ask for.
//
// bench-simulation [DAYS], 30 without it. The files lie in memory, the pictures of the series are counted and
// dropped.

#include <unistd.h>

#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <string>

#include "benchmarks/Effort.h"
#include "core/modNumbers.h"
#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "platform/jpeg/TurboJpegCodec.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/text/FreeTypeFonts.h"
#include "publish/CanvasSaves.h"
#include "support/TestPlatform.h"
#include "text/VWS.h"
#include "time/modTime.h"

namespace tessaloom {
namespace {

constexpr int LiveCanvas = 2;
constexpr int FixedRate = 60, SequentialRate = 300, Copies = 5;
constexpr int TicksPerSecond = 100;
constexpr int SecondsPerDay = 86400;

void Demand(bool holds, const std::string& what) {
    if (holds) return;
    std::fprintf(stderr, "wrong: %s\n", what.c_str());
    std::exit(1);
}

void DemandEqual(long found, long expected, const std::string& what) {
    Demand(found == expected,
           what + ": " + std::to_string(found) + " in place of " + std::to_string(expected));
}

/// Counts what is published, and keeps no picture of the series.
class Disk : public testing::MemoryFileSystem {
public:
    long fixed = 0, series = 0, copies = 0;

    bool WriteFile(std::string_view path, std::string_view bytes) override {
        if (path == "images\\live.jpg") ++fixed;
        if (!path.starts_with("series\\")) return MemoryFileSystem::WriteFile(path, bytes);
        Demand(path == "series\\" + modNumbers::FormatNI(static_cast<int>(series), "00000000") + ".jpg",
               std::string(path) + " is not the next of the series");
        Demand(bytes.size() > 1000, std::string(path) + " is no picture");
        ++series;
        return true;
    }

    bool RenameFile(std::string_view source, std::string_view target, const Between& between) override {
        const bool renamed = MemoryFileSystem::RenameFile(source, target, between);
        copies += renamed;
        return renamed;
    }
};

class CountingView : public CanvasView {
public:
    explicit CountingView(long& shown) : shown_(shown) {}
    void ShowPicture(const DIB&) override { ++shown_; }
    void CanvasChanged() override {}
    void ActivitateFormTimer() override {}
    int Left() const override { return 0; }
    int Top() const override { return 0; }

private:
    long& shown_;
};

/// The demo on a clock that stands still between ticks, with the real fonts and the real codec.
class Simulation {
public:
    Simulation() {
        PosixFileSystem disk;
        for (const char* name :
             {"demo.por", "canvases\\live.can", "canvases\\inset.can", "pictures\\harbour.jpg"}) {
            const auto bytes = disk.ReadFile(std::string(DEMO_FOLDER "\\") + name);
            Demand(bytes.has_value(), std::string("no ") + name);
            files_[name].bytes = *bytes;
        }
        files_["scripts.can"].bytes = "";
        portfolio_.SetViewFactory([this](Canvas&) { return std::make_unique<CountingView>(compositions); });
        portfolio_.SetFaultHandler([](const DocumentFault& fault) { Demand(false, fault.Text()); });
        portfolio_.SetCaptureTime(modTime::Clock());
        portfolio_.SetFileName("demo.por");
        Demand(portfolio_.LoadFile(), "the demo was not loaded");
        portfolio_.ResetCanvas(3);  // what belongs to the script takes no part
        portfolio_.VWS().SetCSVEnabled(false);
        Saves().SetFixedRate(FixedRate);
        Saves().SetSequentialRate(SequentialRate);
    }

    void Run(long seconds) {
        for (long tick = 0; tick < seconds * TicksPerSecond; ++tick) Tick();
        seconds_ += seconds;
    }

    /// What the timetables ask for, the first run of each right after the start.
    void Check() {
        const long fixed = 1 + seconds_ / FixedRate, series = 1 + seconds_ / SequentialRate;
        DemandEqual(files_.fixed, fixed, "writes of the fixed file");
        DemandEqual(files_.series, series, "files of the series");
        DemandEqual(Saves().SequentialNumber(), series, "running number");
        // The n-th run moves every copy that there is by one, and makes one.
        const long moves =
            fixed <= Copies ? fixed * (fixed - 1) / 2 : Copies * (Copies - 1) / 2 + (fixed - Copies) * Copies;
        DemandEqual(files_.copies, moves, "moves of copies");
        for (int copy = 1; copy <= Copies + 1; ++copy) {
            const std::string name = "images\\live000" + std::to_string(copy) + ".jpg";
            Demand(files_.FileExists(name) == (copy <= Copies && copy < fixed), name);
        }
        Demand(files_.ReadFile("canvases\\live.can")->find("SequentialNumber=" + std::to_string(series)) !=
                   std::string::npos,
               "running number in the file");
        // Both canvases show the second; the first composition comes with the first tick. One more of the
        // live one follows when the schedules of its saves have been asked for the first time.
        DemandEqual(compositions, 2 * (1 + seconds_) + 1, "compositions");
    }

    long compositions = 0;

private:
    CanvasSaves& Saves() { return portfolio_.Canvas(LiveCanvas).Saves(); }

    void Tick() {
        fakes_.time.Advance(1.0 / TicksPerSecond);
        portfolio_.SetCaptureTime(modTime::Clock());
        portfolio_.UpdateOtherPre();
        portfolio_.UpdateImages();
        portfolio_.UpdateVideoFeeds();
        portfolio_.UpdateInputDevices();
        portfolio_.UpdateOtherPost();
    }

    testing::TestPlatform fakes_;
    Disk files_;
    ProfileFiles profiles_{files_};
    FreeTypeFonts fonts_;
    TurboJpegCodec codec_;
    Platform platform_{
        files_,        profiles_,      fakes_.locale,  fakes_.time,       fonts_,       fakes_.pictureLoader,
        codec_,        fakes_.dialogs, fakes_.desktop, fakes_.mainWindow, fakes_.timer, fakes_.urlTransfers,
        fakes_.sockets};
    Portfolio portfolio_{platform_};
    long seconds_ = 0;
};

/// Kilobytes.
long ResidentMemory() {
    PosixFileSystem files;
    std::FILE* const file = std::fopen("/proc/self/statm", "r");
    long size = 0, resident = 0;
    const bool read = file && std::fscanf(file, "%ld %ld", &size, &resident) == 2;
    if (file) std::fclose(file);
    Demand(read, "no statement of memory");
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

int DaysFrom(int count, char** arguments) {
    int days = 30;
    if (count > 1) {
        const char* const end = arguments[1] + std::strlen(arguments[1]);
        const auto [rest, error] = std::from_chars(arguments[1], end, days);
        Demand(error == std::errc{} && rest == end && days > 0, "usage: bench-simulation [DAYS]");
    }
    return days;
}

}  // namespace
}  // namespace tessaloom

int main(int count, char** arguments) {
    using namespace tessaloom;
    const int days = DaysFrom(count, arguments);
    const long half = Effort(days * static_cast<long>(SecondsPerDay) / 2, 7200L);
    Simulation simulation;
    const auto start = std::chrono::steady_clock::now();

    // Past the first turn of the series and the full cascade, everything has got its memory.
    constexpr long WarmUp = 3600;
    simulation.Run(WarmUp);
    simulation.Check();
    const long first = ResidentMemory();
    std::printf("resident memory: start  %ld kB\n", first);
    simulation.Run(half - WarmUp);
    simulation.Check();
    const long middle = ResidentMemory();
    std::printf("resident memory: middle %ld kB\n", middle);
    simulation.Run(half);
    simulation.Check();
    const long last = ResidentMemory();
    std::printf("resident memory: end    %ld kB\n", last);

    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const double processor = static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
    const double simulated = 2.0 * static_cast<double>(half);
    std::printf("%d days in %.1f s: %.0f times real time (%.0f in processor time), %ld compositions\n", days,
                seconds, simulated / seconds, simulated / processor, simulation.compositions);
    constexpr long Slack = 1024;
    Demand(last - first <= Slack, "memory grows");
    return 0;
}
