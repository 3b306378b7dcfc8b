#include "platform/v4l2/CameraSource.h"

#include <algorithm>

#include "platform/v4l2/CameraStream.h"

namespace tessaloom {

std::string CameraSource::Run(FrameInbox& inbox) {
    const std::string node = FindNode();
    if (node.empty()) return "no camera or file of that name is there";
    const Device device(finder_.Calls(), node);
    if (!device.IsOpen()) return CameraStream::Failure("it cannot be opened");
    return CameraStream(device, inbox, *codec_).Run();
}

/// The camera that was found first is the one ever after, even when another of its name has come.
std::string CameraSource::FindNode() {
    if (stable_.empty()) {
        const Camera camera = finder_.Find(name_);
        stable_ = camera.stable;
        return camera.node;
    }
    for (const Camera& camera : finder_.Present())
        if (camera.stable == stable_) return camera.node;
    return stable_ == name_ ? stable_ : "";
}

}  // namespace tessaloom
