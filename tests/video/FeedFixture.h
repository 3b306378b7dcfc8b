#pragma once

#include "support/FakeCapture.h"
#include "support/PropertyTable.h"
#include "support/TestPlatform.h"
#include "video/VideoFeed.h"

namespace tessaloom::testing {

/// A feed of one camera, and the clock that its ticks go by.
struct FeedFixture {
    TestPlatform platform;
    CountingOwner owner;
    VideoFeed feed{
        owner,
        platform.time,
        {&platform.capture, platform.files, platform.jpegCodec, platform.desktop, platform.dialogs,
               platform.mainWindow, platform.timer}
    };

    /// Opens it on the camera "Cam".
    void Open() {
        feed.SetFeedName("Cam");
        feed.SetEnabled(true);
        Tick();
    }
    FakeCapture::Window& Window() { return *platform.capture.windows.at(0); }

    /// One tick of 10 ms, and what was put off until after it.
    void Tick() {
        platform.time.Advance(0.01);
        feed.Update();
        platform.timer.Tick();
    }
    /// Takes in a frame of that format.
    void Deliver(int width, int height, std::size_t bytes, std::uint8_t value = 0, std::uint32_t flags = 1) {
        feed.SetNextTime(platform.time.Now());
        Window().Offer({.width = width, .height = height, .sizeImage = static_cast<int>(bytes)},
                       std::vector<std::uint8_t>(bytes, value), flags);
        Tick();
    }
    int Calls(std::string_view name) const {
        return static_cast<int>(std::ranges::count(platform.capture.calls, name));
    }
};

}  // namespace tessaloom::testing
