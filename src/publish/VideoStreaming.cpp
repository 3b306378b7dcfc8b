#include "publish/VideoStreaming.h"

#include "core/ErrorReport.h"

namespace tessaloom {
namespace {

constexpr std::string_view Module = "VideoStreaming.cls";

}  // namespace

void VideoStreaming::Refresh() {
    Trap({Module, "Refresh"}, [&] { ftpPush_.Refresh(); });
}

void VideoStreaming::RestartTimes() {
    ftpPush_.RestartTime();
    canvasWebServer_.ForgetPicture();
}

}  // namespace tessaloom
