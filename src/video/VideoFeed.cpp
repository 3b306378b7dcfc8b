#include "video/VideoFeed.h"

#include <limits>

#include "core/ErrorReport.h"

namespace tessaloom {
namespace {

constexpr std::string_view Module = "VideoFeed.cls";

}  // namespace

void VideoFeed::CloseFeed() {
    valid_ = false;
    resetFrame_ = true;
    hasSource_ = hasFormat_ = hasDisplay_ = false;
}

void VideoFeed::VideoFeedUnload() {
    Trap({Module, "VideoFeedUnload"}, [&] {
        CloseFeed();
        dib_.UnloadClass();
    });
}

void VideoFeed::SetRate(double framesPerSecond) {
    if (Store(rate_, framesPerSecond, {SlowestRate, std::numeric_limits<double>::max()}))
        owner_.SettingChanged();
}

}  // namespace tessaloom
