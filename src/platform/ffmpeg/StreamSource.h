#pragma once

#include <string>

#include "platform/CaptureSource.h"
#include "platform/ffmpeg/FrameConverter.h"
#include "platform/ffmpeg/StreamAddress.h"

namespace tessaloom {

/// A stream, or a file that is played again and again.
class StreamSource final : public CaptureSource {
public:
    explicit StreamSource(const std::string& address) : address_(StreamAddress::Parse(address)) {}

    std::string Run(FrameInbox& inbox) override;

private:
    StreamAddress address_;
    FrameConverter converter_;
};

}  // namespace tessaloom
