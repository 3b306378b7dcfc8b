#include "video/VideoFeed.h"

#include "video/FeedFixture.h"

namespace tessaloom::testing {
namespace {

TEST(VideoFeed, AsksForFramesAtItsRate) {
    const struct {
        double rate, stored, seconds;
        int frames;
        float fps;
    } rows[] = {
        {30,    30,       3,   90, 30},
        {7.5,   7.5,      4,   30, 7 },
        {0.001, 1.0 / 60, 121, 3,  1 },
        {1000,  1000,     1,   99, 99}, // no faster than the ticks
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.rate);
        FeedFixture at;
        at.feed.SetRate(row.rate);
        EXPECT_EQ(at.feed.Rate(), row.stored);
        at.Open();
        for (int tick = 1; tick < row.seconds * 100; ++tick) {
            at.Window().OfferPlain(4, 2, 7);
            at.Tick();
        }
        EXPECT_NEAR(at.feed.FRAME(), row.frames, 1);
        EXPECT_NEAR(at.feed.FPS(), row.fps, 1);
        EXPECT_LE(at.Calls("grab"), at.feed.FRAME() + 1);
    }
}

TEST(VideoFeed, GivesUpAGrabAfterFiveSecondsAndNeverCatchesUp) {
    FeedFixture at;
    at.Open();
    for (int tick = 0; tick < 500; ++tick) at.Tick();
    EXPECT_EQ(at.Calls("grab"), 1);
    at.Tick();
    at.Tick();
    EXPECT_GT(at.Calls("grab"), 1);
    at.Window().OfferPlain(4, 2, 7);
    at.Tick();
    EXPECT_EQ(at.feed.FRAME(), 1);
    EXPECT_EQ(at.feed.NextTime(), at.platform.time.Now());
    EXPECT_EQ(at.feed.LastFrameInterval(), 0) << "the first frame";
    const double first = at.feed.LastFrameTime();
    at.Deliver(4, 2, 24);
    EXPECT_EQ(at.feed.LastFrameInterval(), at.platform.time.Now() - first);
}

TEST(VideoFeed, TakesInFramesOfTwoDepthsAndAnySize) {
    const struct {
        const char* what;
        int width, height;
        std::size_t bytes;
        float bpp;
        int pixel;  // -1: not taken in
    } rows[] = {
        {"24 bits, padded rows", 5,      3, 48,     24,    0x4A4A4A},
        {"16 bits, padded rows", 5,      3, 36,     15,    0x529494},
        {"nothing",              5,      3, 0,      15,    -1      },
        {"one pixel",            1,      1, 4,      24,    0x4A4A4A},
        {"12 bits",              8,      4, 48,     12,    -1      },
        {"half a frame",         5,      4, 33,     13.2F, -1      },
        {"no size",              0,      3, 48,     13.2F, -1      },
        {"too large",            16'385, 1, 49'156, 13.2F, -1      },
    };
    FeedFixture at;
    at.Open();
    int taken = 0;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        at.feed.SetNewDIB(false);
        at.Deliver(row.width, row.height, row.bytes, 0x4A);  // 16 bits 0x4A4A: red and green 18, blue 10
        EXPECT_EQ(at.feed.BPP(), row.bpp);
        EXPECT_EQ(at.feed.NewDIB(), row.pixel >= 0);
        EXPECT_EQ(at.feed.LastFrameTime(), at.platform.time.Now());
        if (row.pixel >= 0) {
            ++taken;
            EXPECT_EQ(at.feed.DIB().Width(), row.width);
            EXPECT_EQ(at.feed.DIB().Pixel(row.width - 1, 0), row.pixel);
        }
        EXPECT_EQ(at.feed.FRAME(), taken);
    }
}

TEST(VideoFeed, ShowsOnceThatItsSourceCannotBeReached) {
    const std::string notConnected = "Error: Error:  Could not connect to capture device.";
    const std::string unsupported =
        "Error: Error:  Could not create capture window.  This is not dependent on the video source, but on "
        "the "
        "underlying OS support for Video-for-Windows.  Exiting Program.";
    const struct {
        const char* what;
        bool supported;
        int failedConnects;
        std::string name;
        CaptureState later;
        std::vector<std::string> shown;
    } rows[] = {
        {"the second try succeeds",  true,  1, "Cam", CaptureState::Delivering, {}            },
        {"both tries fail",          true,  2, "Cam", CaptureState::Delivering, {notConnected}},
        {"the device does not come", true,  0, "Cam", CaptureState::Waiting,    {notConnected}},
        {"no source chosen",         true,  0, "",    CaptureState::Waiting,    {}            },
        {"no capture support",       false, 0, "Cam", CaptureState::Waiting,    {unsupported} },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        FeedFixture at;
        at.platform.capture.supported = row.supported;
        at.platform.capture.failedConnects = row.failedConnects;
        at.feed.SetFeedName(row.name);
        at.feed.SetEnabled(true);
        at.feed.OpenFeed();
        for (auto* window : at.platform.capture.windows) window->status = {.state = row.later, .failures = 1};
        for (int tick = 0; tick < 3; ++tick) at.Tick();
        EXPECT_EQ(at.platform.dialogs.shown, row.shown);
        EXPECT_EQ(at.feed.Valid(), row.shown.empty() && row.later == CaptureState::Delivering);
        EXPECT_EQ(Flags().running, row.supported);
    }
}

TEST(VideoFeed, ShowsErrorsOfTheDriverButNotThatItsSourceWasLost) {
    FeedFixture at;
    at.Open();
    at.Window().status = {.state = CaptureState::Waiting, .failures = 1, .text = "gone"};
    at.Tick();
    EXPECT_FALSE(at.feed.Valid());
    EXPECT_EQ(at.feed.Status(), "gone");
    at.Window().Fail(0, "");
    at.Window().Fail(7, std::string("No signal\0x", 11));
    at.Window().Fail(8, std::string(255, 'a') + "b");
    at.Tick();
    const std::string title = "Video Feed Error Message: ";
    EXPECT_EQ(at.platform.dialogs.shown,
              (std::vector<std::string>{title + "No signal", title + std::string(255, 'a')}));
}

TEST(VideoFeed, FollowsItsSourceByName) {
    FeedFixture at;
    at.platform.capture.cameras = {"Eye", "Cam", "Eye"};
    at.feed.SetVfWInput(1);
    EXPECT_EQ(at.feed.FeedName(), "Cam");
    at.feed.SetVfWInput(2);
    EXPECT_EQ(at.feed.FeedName(), "(2) Eye");
    at.feed.SetEnabled(true);
    at.platform.capture.cameras.insert(at.platform.capture.cameras.begin(), "New");
    at.Tick();
    EXPECT_EQ(at.Window().driver, 3);
    at.feed.SetFeedName("Cam");
    at.Tick();
    EXPECT_EQ(at.Window().driver, 2) << "opened anew";
    at.feed.SetEnabled(false);
    at.Tick();
    EXPECT_TRUE(at.platform.capture.windows.empty());
    at.platform.capture.cameras.assign(10, "Other");
    at.feed.SetEnabled(true);
    at.Tick();
    EXPECT_TRUE(at.platform.capture.windows.empty()) << "only ten drivers can be reached";
}

TEST(VideoFeed, ShowsWhatAFrameLooksLikeOnceAndPreviewsAll) {
    FeedFixture at;
    at.Open();
    at.Window().status.width = 5;
    at.Window().status.height = 3;
    at.feed.SetShowDebugInfo(true);
    at.feed.SetShowPreview(true);
    at.Deliver(5, 3, 48);
    at.platform.mainWindow.preview = {2, 2};
    at.Deliver(5, 3, 48, 9);
    EXPECT_EQ(
        at.platform.dialogs.shown,
        std::vector<std::string>{"Tessaloom: Frame Info:\nFrame Header Length = 40\nBuffer Length = 48\n"
                                 "Bytes Used = 48\nFlags = 1\nPadded Size = 48\nBPP = 24\n"
                                 "Status Width = 5\nStatus Height = 3\nBit Count = 24\n"
                                 "Color Important = 0\nColor Used = 0\nCompression = 0\nHeight = 3\n"
                                 "Planes = 1\nSize = 40\nSize Image = 48\nWidth = 5"});
    ASSERT_EQ(at.platform.mainWindow.previewed.size(), 16U);
    EXPECT_EQ(at.platform.mainWindow.previewed[5], 9);
}

}  // namespace
}  // namespace tessaloom::testing
