#pragma once

#include <memory>
#include <string>

#include "platform/CaptureSource.h"
#include "platform/JpegCodec.h"
#include "platform/v4l2/CameraFinder.h"

namespace tessaloom {

/// One camera, found again wherever it is plugged in.
class CameraSource final : public CaptureSource {
public:
    CameraSource(CameraFinder finder, std::string name, std::unique_ptr<JpegCodec> codec)
        : finder_(std::move(finder)), name_(std::move(name)), codec_(std::move(codec)) {}

    std::string Run(FrameInbox& inbox) override;

private:
    std::string FindNode();

    CameraFinder finder_;
    std::string name_;
    std::string stable_;  ///< Once it was found.
    std::unique_ptr<JpegCodec> codec_;
};

}  // namespace tessaloom
