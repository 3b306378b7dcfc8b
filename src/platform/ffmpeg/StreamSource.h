#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/CaptureSource.h"
#include "platform/JpegDecoder.h"
#include "platform/ffmpeg/FrameConverter.h"
#include "platform/ffmpeg/StreamAddress.h"

namespace tessaloom {

/// A stream, or a file that is played again and again.
class StreamSource final : public CaptureSource {
public:
    /// decoder: for MJPEG; authorities: see `CertificateCheck`.
    StreamSource(const std::string& address, std::unique_ptr<JpegDecoder> decoder, std::string authorities)
        : address_(StreamAddress::Parse(address)),
          decoder_(std::move(decoder)),
          authorities_(std::move(authorities)) {}

    std::string Run(FrameInbox& inbox) override;

private:
    StreamAddress address_;
    std::unique_ptr<JpegDecoder> decoder_;
    std::string authorities_;
    FrameConverter converter_;
};

}  // namespace tessaloom
