#pragma once

#include "platform/CaptureSource.h"
#include "platform/JpegDecoder.h"

namespace tessaloom {

/// Streams and video files, by FFmpeg's libraries.
///
/// Names are addresses: rtsp://, rtsps://, http:// and https:// (MJPEG and whatever else the libraries know),
/// udp://, rtp://, "file:" before a path, or the path of a file alone, which is played in a loop at its own
/// speed. Proxies of the environment are not heeded. Certificates are verified, wherever an address leads;
/// one that begins with "https" or "rtsps" leads nowhere in clear.
class StreamSources final : public CaptureSources {
public:
    /// makeDecoder: for MJPEG, where the libraries' own shows damaged pictures; authorities: the file of
    /// those whose certificates are trusted, in place of the system's.
    explicit StreamSources(MakeJpegDecoder makeDecoder, std::string authorities = "");

    /// Nothing: addresses are typed in.
    std::vector<std::string> List() override { return {}; }
    std::unique_ptr<CaptureSource> Make(const std::string& address) override;

private:
    const MakeJpegDecoder makeDecoder_;
    const std::string authorities_;
};

}  // namespace tessaloom
