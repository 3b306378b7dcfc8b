#pragma once

#include <functional>
#include <memory>

#include "platform/CaptureSource.h"
#include "platform/JpegCodec.h"
#include "platform/v4l2/CameraFinder.h"

namespace tessaloom {

/// Makes a decoder for the thread of one camera.
using MakeJpegCodec = std::function<std::unique_ptr<JpegCodec>()>;

/// The cameras of this machine, by Video4Linux.
///
/// A camera delivers in the size and format that it was last set to (by whichever tool), unless that format
/// is none of those that can be read here. Names may also be the paths of device files.
class CameraSources final : public CaptureSources {
public:
    explicit CameraSources(MakeJpegCodec makeCodec, DeviceCalls calls = DeviceCalls::System(),
                           std::string folder = "/dev");

    std::vector<std::string> List() override;
    std::unique_ptr<CaptureSource> Make(const std::string& name) override;

private:
    CameraFinder finder_;
    MakeJpegCodec makeCodec_;
};

}  // namespace tessaloom
