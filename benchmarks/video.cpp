// Live video: a delivered frame on its way to the canvas, motion detection, the processor share of feeds
// beside that of the ffmpeg command, and the length of ticks while addresses are dead.
//
// bench-video [SECONDS], 10 without it, for each measurement of processor shares and ticks.

#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "benchmarks/Effort.h"
#include "imaging/Graphic.h"
#include "model/AllocationCounter.h"
#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "platform/capture/CaptureList.h"
#include "platform/ffmpeg/StreamSources.h"
#include "support/FrameDecoder.h"
#include "support/PropertyTable.h"
#include "support/TemporaryFolder.h"
#include "support/TestPlatform.h"
#include "video/VideoFeed.h"

using namespace tessaloom;
using namespace tessaloom::testing;
using Steady = std::chrono::steady_clock;

namespace {

constexpr int Width = 1920, Height = 1080;

double Milliseconds(const std::function<void()>& work) {
    const auto start = Steady::now();
    work();
    return std::chrono::duration<double, std::milli>(Steady::now() - start).count();
}

/// Runs `work` over and over and prints the median and the least time.
void Time(const char* what, double bound, const std::function<void(int turn)>& work) {
    std::vector<double> times;
    const int turns = Effort(200, 3);
    times.reserve(static_cast<std::size_t>(turns));
    for (int turn = 0; turn < turns; ++turn) times.push_back(Milliseconds([&] { work(turn); }));
    std::ranges::sort(times);
    std::printf("%-44s %7.3f ms, least %.3f", what, times[times.size() / 2], times.front());
    if (bound > 0) std::printf("   (to reach: %.1f)", bound);
    std::puts("");
}

/// Frames of a still scene with the noise of a camera.
std::vector<std::vector<std::uint8_t>> NoisyFrames() {
    std::mt19937 random(1);
    std::vector<std::vector<std::uint8_t>> frames(4);
    for (auto& frame : frames) {
        frame.resize(std::size_t{3} * Width * Height);
        for (std::size_t i = 0; i < frame.size(); ++i)
            frame[i] = static_cast<std::uint8_t>(40 + i / 97 % 150 + random() % 5);
    }
    return frames;
}

/// A canvas of the frames' size that shows feed 0.
Graphic& ShowFeed(Portfolio& portfolio, int slot, int width, int height) {
    Canvas& canvas = portfolio.Canvas(slot);
    canvas.SetWidthHeight(width, height);
    canvas.SetEnabled(true);
    Graphic& layer = *canvas.AddGraphic(1);
    layer.SetSourceType(Graphic::VideoFeed);
    layer.SetRate(0.01);
    return layer;
}

void FrameToCanvas() {
    TestPlatform parts;
    Portfolio portfolio(parts.platform);
    ShowFeed(portfolio, 1, Width, Height);
    VideoFeed& feed = portfolio.VideoFeed(0);
    feed.SetFeedName("Cam");
    feed.SetEnabled(true);
    feed.Update();
    auto& window = *parts.capture.windows.at(0);
    window.OfferPlain(Width, Height, 0);
    feed.SetNextTime(0);
    feed.Update();
    const auto frames = NoisyFrames();
    long before = 0;
    Time("1920x1080, delivered frame to canvas", 0, [&](int turn) {
        if (turn == 4) before = Allocations();
        const auto& bytes = frames[static_cast<std::size_t>(turn) % frames.size()];
        feed.FrameCallback({.data = bytes, .bytesUsed = bytes.size()});
        parts.time.Advance(0.04);
        portfolio.SetCaptureTime(parts.time.Now());
        portfolio.UpdateImages();
    });
    std::printf("%-44s %7ld\n", "  allocations in 196 frames", Allocations() - before);
    std::vector<std::uint8_t> one(frames[0].size()), two(frames[0].size());
    Time("  the same bytes copied and drawn by memcpy", 0, [&](int turn) {
        const auto& bytes = frames[static_cast<std::size_t>(turn) % frames.size()];
        std::memcpy(one.data(), bytes.data(), bytes.size());
        std::memcpy(two.data(), one.data(), one.size());
    });
}

void Motion() {
    TestPlatform parts;
    CountingOwner owner;
    const auto bytes = NoisyFrames();
    std::vector<DIB> frames(bytes.size());
    for (std::size_t i = 0; i < frames.size(); ++i) {
        frames[i].SetWidthHeight(Width, Height);
        std::ranges::copy(bytes[i], frames[i].DIBPtr());
    }
    for (const int radius : {0, 1, 3}) {
        MotionDetect detector(owner, {parts.files, parts.jpegCodec, parts.desktop});
        detector.SetDiffPreBlurRadius(radius);
        detector.SetBrighterMotionLimit(160);
        detector.SetDarkerMotionLimit(96);
        const std::string what = "1920x1080, DiffFrames, blur radius " + std::to_string(radius);
        Time(what.c_str(), radius == 1 ? 1.2 : 0,
             [&](int turn) { detector.DiffFrames(frames[static_cast<std::size_t>(turn) % frames.size()]); });
    }
}

/// Processor seconds of this process, or of its ended children.
double ProcessorSeconds(int whose) {
    rusage used{};
    getrusage(whose, &used);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(used.ru_utime) + seconds(used.ru_stime);
}

void Demand(bool holds, const std::string& what) {
    if (holds) return;
    std::fprintf(stderr, "wrong: %s\n", what.c_str());
    std::exit(1);
}

/// Feeds of one address each on a canvas of their own, ticked every 10 ms as the program does.
class LiveFeeds {
public:
    explicit LiveFeeds(const std::vector<std::string>& addresses, double rate = 30) {
        parts_.platform.captureDrivers = &drivers_;
        for (int feed = 0; feed < static_cast<int>(addresses.size()); ++feed) {
            portfolio_.VideoFeed(feed).SetFeedName(addresses[static_cast<std::size_t>(feed)]);
            portfolio_.VideoFeed(feed).SetRate(rate);
            portfolio_.VideoFeed(feed).SetEnabled(true);
            ShowFeed(portfolio_, feed + 1, 640, 480).SetSourceVideoFeed(feed);
        }
    }

    /// Ticks for so long; returns how long each tick took, in milliseconds.
    std::vector<double> Run(double seconds) {
        std::vector<double> lengths;
        const auto start = Steady::now();
        for (auto due = start; due - start < std::chrono::duration<double>(seconds);) {
            lengths.push_back(Milliseconds([&] {
                parts_.time.Set(FakeTime::FirstDay + 0.5 +
                                std::chrono::duration<double>(Steady::now() - begun_).count() / 86400);
                portfolio_.SetCaptureTime(parts_.time.Now());
                portfolio_.UpdateImages();
                portfolio_.UpdateVideoFeeds();
            }));
            due += std::chrono::milliseconds(10);
            std::this_thread::sleep_until(due);
        }
        return lengths;
    }
    int Frames() { return portfolio_.VideoFeed(0).FRAME(); }

private:
    struct NoCameras : CaptureSources {
        std::vector<std::string> List() override { return {}; }
        std::unique_ptr<CaptureSource> Make(const std::string&) override { return nullptr; }
    };

    const Steady::time_point begun_ = Steady::now();
    NoCameras cameras_;
    StreamSources streams_{MakeFrameDecoder};
    CaptureList drivers_{cameras_, streams_};
    TestPlatform parts_;
    Portfolio portfolio_{Prepared()};

    Platform& Prepared() {
        parts_.platform.captureDrivers = &drivers_;
        return parts_.platform;
    }
};

/// Processor share of the ffmpeg command that decodes and scales the file to nothing, at the file's speed.
double ShareOfCommand(const std::string& file, double seconds) {
    const double before = ProcessorSeconds(RUSAGE_CHILDREN);
    const std::string command = "ffmpeg -v error -re -stream_loop -1 -threads 1 -i '" + file + "' -t " +
                                std::to_string(seconds) +
                                " -vf scale=640:480,format=bgr24 -f null - </dev/null";
    Demand(std::system(command.c_str()) == 0, "the ffmpeg command failed");
    return (ProcessorSeconds(RUSAGE_CHILDREN) - before) / seconds;
}

double ShareOfFeeds(const std::vector<std::string>& addresses, double seconds, double rate = 30) {
    LiveFeeds feeds(addresses, rate);
    feeds.Run(2);
    Demand(feeds.Frames() > 0, "no frame came from " + addresses[0]);
    const int frames = feeds.Frames();
    const double before = ProcessorSeconds(RUSAGE_SELF);
    feeds.Run(seconds);
    const double share = (ProcessorSeconds(RUSAGE_SELF) - before) / seconds;
    std::printf("  %.1f frames a second\n", (feeds.Frames() - frames) / seconds);
    return share;
}

void Shares(double seconds) {
    const TemporaryFolder folder;
    for (const char* coder : {"libx264 -preset veryfast -g 30", "mjpeg -q:v 5"}) {
        const std::string file = folder / (coder[0] == 'm' ? "clip.avi" : "clip.mp4");
        const std::string make =
            "ffmpeg -v error -f lavfi -i testsrc2=s=640x480:r=30:d=10 -pix_fmt yuvj420p -c:v " +
            std::string(coder) + " '" + file + "' </dev/null";
        Demand(std::system(make.c_str()) == 0, "the clip could not be made");
        std::printf("640x480, 30 frames a second, %s\n", coder);
        const double command = ShareOfCommand(file, seconds);
        const double one = ShareOfFeeds({file}, seconds);
        const double ten = ShareOfFeeds(std::vector<std::string>(10, file), seconds);
        const double slow = ShareOfFeeds({file}, seconds, 1.0 / 60);
        std::printf(
            "  ffmpeg command %.2f %%, one feed %.2f %% (to reach: %.2f), ten feeds %.2f %% (33), one "
            "frame a minute %.2f %%\n",
            100 * command, 100 * one, 100 * (1.3 * command + 0.01), 100 * ten, 100 * slow);
    }
}

/// A server that takes connections and never says a word.
class MuteServer {
public:
    MuteServer() : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        auto* const any = reinterpret_cast<sockaddr*>(&address);
        Demand(bind(socket_, any, length) == 0 && listen(socket_, 8) == 0 &&
                   getsockname(socket_, any, &length) == 0,
               "no port to listen on");
        port_ = ntohs(address.sin_port);
    }
    ~MuteServer() { close(socket_); }
    MuteServer(const MuteServer&) = delete;
    MuteServer& operator=(const MuteServer&) = delete;

    std::string Address(const char* scheme) const {
        return std::string(scheme) + "://127.0.0.1:" + std::to_string(port_) + "/x";
    }

private:
    int socket_;
    int port_ = 0;
};

void DeadAddresses(double seconds) {
    const MuteServer mute;
    LiveFeeds feeds({"rtsp://127.0.0.1:1/refused", "http://127.0.0.1:1/refused",
                     "http://no-such-host.invalid/x", mute.Address("http"), mute.Address("rtsp"),
                     "udp://127.0.0.1:9", "/no/such/file.mp4"});
    std::vector<double> lengths = feeds.Run(seconds);
    std::ranges::sort(lengths);
    const auto late = std::ranges::count_if(lengths, [](double length) { return length > 5; });
    std::printf(
        "ticks with seven dead addresses: median %.3f ms, 99.9 %% below %.3f ms, longest %.3f ms, %ld of "
        "%zu over 5 ms\n",
        lengths[lengths.size() / 2], lengths[lengths.size() * 999 / 1000], lengths.back(),
        static_cast<long>(late), lengths.size());
}

}  // namespace

int main(int count, char** arguments) {
    const double seconds = count > 1 ? std::atof(arguments[1]) : tessaloom::Effort(10.0, 0.2);
    FrameToCanvas();
    Motion();
    Shares(seconds);
    DeadAddresses(seconds);
}
