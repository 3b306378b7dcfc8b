#include "platform/v4l2/CameraSources.h"

#include <utility>

#include "platform/v4l2/CameraSource.h"

namespace tessaloom {

CameraSources::CameraSources(MakeJpegCodec makeCodec, DeviceCalls calls, std::string folder)
    : finder_(std::move(calls), std::move(folder)), makeCodec_(std::move(makeCodec)) {}

std::vector<std::string> CameraSources::List() {
    std::vector<std::string> names;
    for (const Camera& camera : finder_.Present()) names.push_back(camera.name);
    return names;
}

std::unique_ptr<CaptureSource> CameraSources::Make(const std::string& name) {
    return std::make_unique<CameraSource>(finder_, name, makeCodec_());
}

}  // namespace tessaloom
