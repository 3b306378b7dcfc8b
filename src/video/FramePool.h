#pragma once

#include <memory>
#include <vector>

#include "imaging/DIB.h"

namespace tessaloom {

/// The frames of one feed: whoever takes one in shares it, so that it is never copied. A frame that somebody
/// shares is not written to any more; one that nobody shares is written anew.
///
/// There is one frame for each picture that is shown at a time, and one to spare.
class FramePool {
public:
    /// The frame to be filled next, of that size, with any content; null without memory for it.
    std::shared_ptr<DIB> Next(int width, int height);

    /// The frame that was filled last; null before the first.
    const std::shared_ptr<DIB>& Latest() const { return latest_; }
    void SetLatest(std::shared_ptr<DIB> frame) { latest_ = std::move(frame); }

    /// Lets go of all frames.
    void Clear();

private:
    std::vector<std::shared_ptr<DIB>> frames_;
    std::shared_ptr<DIB> latest_;
};

}  // namespace tessaloom
