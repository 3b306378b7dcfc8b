#include <poll.h>

#include "platform/capture/CaptureList.h"
#include "platform/capture/FrameExchange.h"
#include "platform/capture/PatternChannel.h"
#include "support/TemporaryFolder.h"

namespace tessaloom::testing {
namespace {

using namespace std::chrono_literals;

FrameExchange::Clock::time_point present{1h};

FrameExchange::Clock::time_point Present() { return present; }

/// A stream of 1 x 1 pixels and the feed that asks for it, over some time.
struct Traffic {
    FrameExchange exchange{&Present};
    int converted = 0, taken = 0;
    FrameExchange::Clock::duration oldest{};  ///< The greatest age of a frame when it was taken.

    void Arrive() {
        if (!exchange.Arrived()) return;
        ++converted;
        exchange.Begin({.width = 1, .height = 1});
        exchange.Commit();
    }

    /// Ticks every 10 ms. Both intervals in milliseconds.
    void Run(std::chrono::milliseconds length, int frameInterval, int requestInterval) {
        bool outstanding = false;
        std::chrono::milliseconds lastArrival{};
        for (auto time = 0ms; time < length; time += 1ms, present += 1ms) {
            if (time.count() % frameInterval == 0) Arrive(), lastArrival = time;
            if (time.count() % 10 != 0) continue;
            if (time.count() % requestInterval == 0) exchange.Request(), outstanding = true;
            if (!outstanding || !exchange.Take()) continue;
            outstanding = false;
            ++taken;
            oldest = std::max<FrameExchange::Clock::duration>(oldest, time - lastArrival);
        }
    }
};

TEST(FrameExchange, ConvertsTheFramesThatAreAskedForAndFewOthers) {
    struct Case {
        int frameInterval, requestInterval;  // milliseconds
        int taken, converted;                // in 10 minutes, at least and at most
    };
    for (const Case& row : {
             Case{33,   30,     17000, 18182},
             {33,   100,    5990,  18182},
             {33,   1000,   599,   2000 },
             {33,   60'000, 10,    60   },
             {5000, 60'000, 10,    30   },
             {5000, 30,     115,   120  }
    }) {
        SCOPED_TRACE(::testing::Message() << row.frameInterval << " and " << row.requestInterval << " ms");
        Traffic traffic;
        traffic.Run(10min, row.frameInterval, row.requestInterval);
        EXPECT_GE(traffic.taken, row.taken);
        EXPECT_LE(traffic.converted, row.converted);
        EXPECT_LE(traffic.oldest, 100ms + 1ms * row.frameInterval);
    }
}

TEST(FrameExchange, MarksTheFirstFrameOfEachConnectionAndShowsNoOldOnes) {
    Traffic traffic;
    FrameExchange& exchange = traffic.exchange;
    std::vector<bool> firsts;
    const auto take = [&] {
        exchange.Request();
        if (const CapturedFrame* frame = exchange.Take()) firsts.push_back(frame->first);
    };
    for (int connection = 0; connection < 2; ++connection) {
        exchange.BeginConnection();
        exchange.Request();
        traffic.Arrive();
        take();
        traffic.Arrive();
        take();
        EXPECT_TRUE(exchange.EndConnection("unplugged"));
        EXPECT_EQ(exchange.Words(), "unplugged");
    }
    EXPECT_EQ(exchange.Failures(), 0);
    EXPECT_EQ(firsts, (std::vector<bool>{true, false, true, false}));

    exchange.Request();
    traffic.Arrive();
    present += 6s;
    EXPECT_EQ(exchange.Take(), nullptr);
    traffic.Arrive();
    EXPECT_NE(exchange.Take(), nullptr);
}

TEST(TestPattern, DependsOnTheNumberAndTheSizeAlone) {
    for (const TestPattern::Format& format : {
             TestPattern::Format{  },
             {  1,   1, 25},
             { 641, 479, 25},
             { 3,   500, 25}
    }) {
        TestPattern one(format), other(format);
        other.Frame(7);
        const auto expected = one.Frame(1'234'567);
        const std::vector<std::uint8_t> copy(expected.begin(), expected.end());
        const auto same = other.Frame(1'234'567);
        EXPECT_TRUE(std::ranges::equal(copy, same)) << format.width;
        EXPECT_EQ(same.size(), static_cast<std::size_t>((format.width * 3 + 3) / 4 * 4 * format.height));
        EXPECT_TRUE(format.width == 1 || !std::ranges::equal(copy, other.Frame(1'234'568))) << format.width;
    }
}

/// Equal cameras that deliver nothing.
class DeadCameras : public CaptureSources {
public:
    struct Source : CaptureSource {
        explicit Source(std::string why) : reason(std::move(why)) {}
        std::string Run(FrameInbox& inbox) override {
            inbox.Accepts(20'000, 10);
            return reason;
        }
        std::string reason;
    };
    std::string reason = "no picture";
    std::vector<std::string> names = {"Eye", "Door", "Eye"};
    std::vector<std::string> made;

    std::vector<std::string> List() override { return names; }
    std::unique_ptr<CaptureSource> Make(const std::string& name) override {
        made.push_back(name);
        return std::make_unique<Source>(reason);
    }
};

class Drivers : public ::testing::Test {
protected:
    DeadCameras cameras, streams;
    std::vector<std::string> log;
    CaptureList list{cameras, streams, [this](const std::string& line) { log.push_back(line); }};

    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (int driver = 0; list.capGetDriverDescription(driver); ++driver)
            names.push_back(NumberedDriverName(list, driver));
        return names;
    }
};

TEST_F(Drivers, AreTheCamerasThenTheAddressesInUseThenTheTestPattern) {
    EXPECT_EQ(list.Find("(2) Eye"), 2);
    EXPECT_EQ(list.Find("Eye"), 0);
    EXPECT_EQ(list.Find("(1) Door"), 1);
    EXPECT_EQ(list.Find(""), -1);
    EXPECT_EQ(list.Find("rtsp://camera/1"), 3);
    EXPECT_EQ(list.Find("Roof"), 3);  // a camera that is not plugged in
    EXPECT_EQ(list.Find("test:64x48@5"), 5);
    EXPECT_EQ(list.Find("rtsp://camera/1"), 4);
    EXPECT_EQ(Names(), (std::vector<std::string>{"(1) Eye", "Door", "(2) Eye", "Roof", "rtsp://camera/1",
                                                 "test:64x48@5", "Test Pattern"}));
    const auto window = list.capCreateCaptureWindow("window");
    EXPECT_TRUE(window->capDriverConnect(3));
    EXPECT_FALSE(list.capCreateCaptureWindow("other")->capDriverConnect(7));
    cameras.names = {"Eye", "Roof"};
    list.Refresh();
    EXPECT_EQ(Names(), (std::vector<std::string>{"Eye", "Roof", "Test Pattern"}));
    std::vector<std::unique_ptr<CaptureWindow>> feeds;
    for (int i = 0; i < 8; ++i) {
        list.Find("udp://unused:" + std::to_string(i));
        feeds.push_back(list.capCreateCaptureWindow("window"));
        EXPECT_TRUE(feeds.back()->capDriverConnect(list.Find("udp://:" + std::to_string(i))));
    }
    EXPECT_FALSE(window->capDriverConnect(list.Find("Test Pattern")));
    EXPECT_EQ(window->State(), CaptureState::Disconnected);
}

TEST_F(Drivers, ASourceThatFailsIsTriedAgainAndTellsOnceWhatCannotBeHelped) {
    const auto window = list.capCreateCaptureWindow("window");
    std::vector<std::string> errors;
    window->capSetCallbackOnError([&](int id, std::string_view text) {
        errors.push_back(std::to_string(id) + " " + std::string(text));
    });
    ASSERT_TRUE(window->capDriverConnect(list.Find("http://eye.example/live")));
    EXPECT_EQ(streams.made, std::vector<std::string>{"http://eye.example/live"});
    for (int i = 0; window->Failures() < 2 && i < 1000; ++i) ::poll(nullptr, 0, 10), window->Poll();
    EXPECT_EQ(window->Failures(), 2);
    EXPECT_EQ(window->capGetStatus().text, "no picture");
    EXPECT_EQ(errors, std::vector<std::string>{"1 Frames of 20000 x 10 pixels are refused"});
    EXPECT_EQ(log, std::vector<std::string>{"Video from http://eye.example/live: no picture"});
}

TEST_F(Drivers, ANameIsAnAddressOrAFileThatIsThereElseACamera) {
    const TemporaryFolder folder;
    std::ofstream(folder / "clip.mp4");
    const std::string file = std::filesystem::relative(folder / "clip.mp4");
    cameras.reason = "camera", streams.reason = "stream";
    const std::pair<std::string, const char*> cases[] = {
        {"EasyCamera: EasyCamera", "camera"},
        {"Video/TV Grabber",       "camera"},
        {"/dev/video7",            "camera"},
        {file,                     "stream"},
        {file + "x",               "camera"},
        {"/clip.mp4",              "stream"},
        {"rtsp://camera",          "stream"},
    };
    for (const auto& [name, reason] : cases) {
        const auto window = list.capCreateCaptureWindow("window");
        ASSERT_TRUE(window->capDriverConnect(list.Find(name)));
        for (int i = 0; window->Failures() == 0 && i < 1000; ++i) ::poll(nullptr, 0, 10);
        EXPECT_EQ(window->capGetStatus().text, reason) << name;
    }
}

TEST_F(Drivers, TheTestPatternDeliversOneFrameForEachGrab) {
    const auto window = list.capCreateCaptureWindow("window");
    std::vector<std::uint32_t> flags;
    window->capSetCallbackOnFrame([&](const FrameHeader& frame) {
        flags.push_back(frame.flags);
        EXPECT_EQ(frame.bytesUsed, 8u * 2);
    });
    ASSERT_TRUE(window->capDriverConnect(list.Find("test:2x2@1000")));
    CaptureFormat format;
    EXPECT_FALSE(window->capGetVideoFormat(format));
    for (int i = 0; flags.size() < 2 && i < 1000; ++i) {
        if (i % 10 == 0) window->capGrabFrame();
        ::poll(nullptr, 0, 1), window->Poll();
    }
    EXPECT_EQ(flags, (std::vector<std::uint32_t>{FrameHeader::Done | FrameHeader::First, FrameHeader::Done}));
    EXPECT_TRUE(window->capGetVideoFormat(format));
    EXPECT_EQ(format.sizeImage, 16);
    for (const char* impossible : {"test:0x5", "test:5", "test:5x5@0", "test:99999x5", "test:5x5@1z"}) {
        ASSERT_TRUE(window->capDriverConnect(list.Find(impossible)));
        EXPECT_EQ(window->State(), CaptureState::Waiting) << impossible;
    }
}

}  // namespace
}  // namespace tessaloom::testing
