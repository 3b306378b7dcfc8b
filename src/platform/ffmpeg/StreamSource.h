#pragma once

#include <string>
#include <utility>

#include "platform/CaptureSource.h"
#include "platform/ffmpeg/FrameConverter.h"
#include "platform/ffmpeg/StreamAddress.h"

namespace tessaloom {

/// A stream, or a file that is played again and again.
class StreamSource final : public CaptureSource {
public:
    /// authorities: see `CertificateCheck`.
    StreamSource(const std::string& address, std::string authorities)
        : address_(StreamAddress::Parse(address)), authorities_(std::move(authorities)) {}

    std::string Run(FrameInbox& inbox) override;

private:
    StreamAddress address_;
    std::string authorities_;
    FrameConverter converter_;
};

}  // namespace tessaloom
