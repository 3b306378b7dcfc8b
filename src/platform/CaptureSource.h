#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/CaptureDriver.h"

namespace tessaloom {

/// Where a source puts its frames. Used by the source's own thread.
class FrameInbox {
public:
    virtual ~FrameInbox() = default;

    /// The source is to end soon. Asked at least every 0.2 s.
    virtual bool Stopped() const = 0;

    /// A frame has arrived. True: somebody will want it, so it is worth converting; else it is dropped.
    virtual bool Arrived() = 0;

    /// The rows to fill with the frame, `format.sizeImage` bytes; the size is worked out here. Empty when
    /// such frames are refused: the source ends then.
    virtual std::span<std::uint8_t> Begin(CaptureFormat format) = 0;

    /// The rows are filled.
    virtual void Commit() = 0;

    /// Whether frames of that size may be delivered; says so to the feed's owner if not.
    virtual bool Accepts(int width, int height) = 0;
};

/// One camera, stream or file. Made on the engine's thread, used by a thread of its own that may outlive
/// whatever made it: it owns or copies all it needs.
class CaptureSource {
public:
    virtual ~CaptureSource() = default;

    /// One attempt: opens the source, fills `inbox` until the source ends or fails or the inbox is stopped,
    /// and closes it. Returns why it ended, in words without a password.
    virtual std::string Run(FrameInbox& inbox) = 0;
};

/// Makes sources of one kind.
class CaptureSources {
public:
    virtual ~CaptureSources() = default;

    /// What can be listed now, bare names in a lasting order.
    virtual std::vector<std::string> List() = 0;

    /// name: as people tell sources apart, "(2) " before the second of equal ones. It need not be there yet.
    virtual std::unique_ptr<CaptureSource> Make(const std::string& name) = 0;
};

}  // namespace tessaloom
