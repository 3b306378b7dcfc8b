#include "video/FramePool.h"

namespace tessaloom {

std::shared_ptr<DIB> FramePool::Next(int width, int height) {
    std::erase_if(frames_,
                  [&](const auto& frame) { return frame->Width() != width || frame->Height() != height; });
    // The latest one is shared, too: until the next is whole, it is the last good picture.
    for (const auto& frame : frames_)
        if (frame.use_count() == 1) return frame;

    auto fresh = std::make_shared<DIB>();
    fresh->SetWidthHeight(width, height);
    if (!fresh->DIBPtr()) return nullptr;
    frames_.push_back(fresh);
    return fresh;
}

void FramePool::Clear() {
    frames_.clear();
    latest_.reset();
}

}  // namespace tessaloom
