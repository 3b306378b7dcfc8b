#include "model/AllocationCounter.h"
#include "model/Documents.h"
#include "platform/capture/CaptureList.h"
#include "platform/capture/TestPattern.h"
#include "script/host/Script.h"
#include "support/RecordingScriptEngine.h"
#include "video/VideoFeed.h"

namespace tessaloom::testing {
namespace {

constexpr int Width = 64, Height = 48;

/// A canvas with a layer that shows feed 2, at its own size.
struct Feeds : Documents, ::testing::Test {
    Canvas& canvas = Open(1, 80, 60);
    VideoFeed& feed = portfolio.VideoFeed(2);

    Graphic& Show(Canvas& on, int slot, int x) {
        Graphic& layer = Block(on, slot, 0, x, 0, 1, 1);
        layer.SetSourceType(Graphic::VideoFeed);
        layer.SetSourceVideoFeed(2);
        layer.SetRate(0.01);
        return layer;
    }
    void Start() {
        feed.SetFeedName("Cam");
        feed.SetEnabled(true);
        Tick(0.04);
    }
    void Deliver(std::uint8_t value, std::uint32_t flags = FrameHeader::Done, double seconds = 0.04) {
        capture.windows.at(0)->OfferPlain(Width, Height, value, flags);
        Tick(seconds);
    }
    int TopLeft(const Canvas& of) { return of.Picture().Pixel(0, 0); }
};

TEST_F(Feeds, ShowOneFrameOnSeveralCanvasesWithoutAllocating) {
    Canvas& other = Open(2, Width, Height);
    Canvas& slow = Open(3, Width, Height);
    Show(canvas, 1, 0);
    Show(other, 4, 0);
    Show(slow, 1, 0).SetRate(3600);
    Start();
    Deliver(10);
    EXPECT_EQ(TopLeft(canvas), 0) << "canvases come before feeds in a tick";
    slow.ForceUpdate();
    for (const std::uint8_t value : {20, 30, 40}) Deliver(value);
    EXPECT_EQ(TopLeft(canvas), 0x1E1E1E);
    EXPECT_EQ(TopLeft(other), 0x1E1E1E);
    EXPECT_EQ(TopLeft(slow), 0x0A0A0A);
    EXPECT_EQ(canvas.Picture().Pixel(Width, 0), 0);

    std::vector<std::uint8_t> bytes(Width * Height * 3, 77);
    const FrameHeader frame{.data = bytes, .bytesUsed = bytes.size()};
    long before = 0;
    for (int number = 0; number < 50; ++number) {
        if (number == 2)
            before = Allocations();  // one frame is shown by each canvas, one the latest, one to spare
        bytes[0] = static_cast<std::uint8_t>(number);
        feed.FrameCallback(frame);
        time.Advance(0.04);
        portfolio.SetCaptureTime(time.Now());
        portfolio.UpdateImages();
    }
    EXPECT_EQ(Allocations(), before);
    EXPECT_EQ(canvas.Picture().Pixel(0, Height - 1), 49 << 16 | 77 << 8 | 77);
}

TEST_F(Feeds, TellTagsAndScriptOfMotion) {
    RecordingScriptEngine engine;
    engine.procedures.push_back({"MotionDetected", 1});
    Write("script.txt", "'");
    portfolio.Script().SetEngine(&engine);
    portfolio.Script().SetAllowMotionDetected(true);
    portfolio.Script().SetEnabled(true);
    feed.MotionDetect().SetEnabled(true);
    feed.MotionDetect().SetBrighterPercent(10);
    feed.MotionDetect().SetDarkerPercent(-10);
    Start();
    Deliver(10);
    EXPECT_EQ(engine.calls.size(), 0U);
    Deliver(90);
    EXPECT_EQ(engine.calls, std::vector<std::string>{"MotionDetected(3)"});
    EXPECT_EQ(portfolio.LastMotionTime(2), time.Now());
    Deliver(90);
    Deliver(10, FrameHeader::Done | FrameHeader::First);
    EXPECT_EQ(engine.calls.size(), 1U) << "coming back is no motion";
    Deliver(90, FrameHeader::Done, -3600);
    EXPECT_EQ(engine.calls.size(), 1U) << "nor is a clock that was set back";
    EXPECT_EQ(feed.LastFrameInterval(), 0);
    portfolio.ReopenFeeds();
    Tick();
    EXPECT_EQ(std::ranges::count(capture.calls, "connect 0"), 2);
    Deliver(90);
    EXPECT_EQ(engine.calls.size(), 1U) << "nor is a feed that was reopened";
    engine.during = [] { Flags().running = false; };
    Deliver(10);
    EXPECT_EQ(engine.calls.size(), 2U);
    portfolio.VideoFeed(9).SetFeedName("Cam");
    portfolio.VideoFeed(9).SetEnabled(true);
    portfolio.UpdateVideoFeeds();
    EXPECT_EQ(capture.windows.size(), 1U) << "the script ended the program";
}

/// Neither cameras nor streams.
struct NoSources : CaptureSources {
    std::vector<std::string> List() override { return {}; }
    std::unique_ptr<CaptureSource> Make(const std::string&) override { return nullptr; }
};

TEST(RealFeeds, BringTheTestPatternOntoACanvas) {
    const struct {
        const char* name;
        int width, height;
    } rows[] = {
        {"test:41x33@0.001",     41,   33  },
        {"test:4096x2160@0.001", 4096, 2160},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        NoSources none;
        CaptureList drivers(none, none);
        TestPlatform parts;
        parts.platform.captureDrivers = &drivers;
        Portfolio portfolio(parts.platform);
        portfolio.VideoFeed(0).SetFeedName(row.name);
        portfolio.VideoFeed(0).SetEnabled(true);
        Canvas& canvas = portfolio.Canvas(1);
        canvas.SetWidthHeight(80, 60);
        canvas.SetEnabled(true);
        Graphic& layer = *canvas.AddGraphic(1);
        layer.SetSourceType(Graphic::VideoFeed);
        layer.SetRate(0.01);
        for (int tick = 0; tick < 3; ++tick) {
            parts.time.Advance(0.01);
            portfolio.SetCaptureTime(parts.time.Now());
            portfolio.UpdateImages();
            portfolio.UpdateVideoFeeds();
        }
        TestPattern pattern({.width = row.width, .height = row.height});
        const auto rows24 = pattern.Frame(0);
        EXPECT_EQ(layer.Width(), row.width);
        for (int y = 0; y < std::min(row.height, 60); ++y) {
            const auto* expected =
                rows24.data() + std::ptrdiff_t{row.height - 1 - y} * DIB::StrideOf(row.width);
            ASSERT_TRUE(
                std::equal(expected, expected + 3 * std::min(row.width, 80), canvas.Picture().Row(y)));
        }
    }
}

}  // namespace
}  // namespace tessaloom::testing
