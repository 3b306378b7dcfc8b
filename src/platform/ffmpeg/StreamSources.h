#pragma once

#include "platform/CaptureSource.h"

namespace tessaloom {

/// Streams and video files, by FFmpeg's libraries.
///
/// Names are addresses: rtsp://, rtsps://, http:// and https:// (MJPEG and whatever else the libraries know),
/// udp://, rtp://, "file:" before a path, or the path of a file alone, which is played in a loop at its own
/// speed. Proxies of the environment are not heeded; certificates are verified.
class StreamSources final : public CaptureSources {
public:
    StreamSources();

    /// Nothing: addresses are typed in.
    std::vector<std::string> List() override { return {}; }
    std::unique_ptr<CaptureSource> Make(const std::string& address) override;
};

}  // namespace tessaloom
