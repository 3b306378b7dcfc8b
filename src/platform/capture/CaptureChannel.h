#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "platform/CaptureDriver.h"

namespace tessaloom {

/// A frame on its way to the engine. `bytes` last until the next `Take`.
struct CapturedFrame {
    CaptureFormat format;
    std::span<const std::uint8_t> bytes;
    std::uint32_t time = 0;  ///< Milliseconds since the channel was made.
    bool first = false;      ///< Of its connection.
};

/// The engine's end of a source that is kept open. Destroying it ends the source without waiting for it.
class CaptureChannel {
public:
    virtual ~CaptureChannel() = default;

    /// Asks for a frame.
    virtual void Request() = 0;

    /// The frame that was asked for, once, when it is there.
    virtual const CapturedFrame* Take() = 0;

    virtual CaptureState State() const = 0;
    virtual int Failures() const = 0;
    virtual std::string Words() const = 0;  ///< What goes on, for people.

    /// What no reopening repairs, told once; "" when there is nothing new.
    virtual std::string TakeError() { return {}; }
};

}  // namespace tessaloom
