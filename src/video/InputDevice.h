#pragma once

#include "video/VideoFeed.h"

namespace tessaloom {

/// What an input device takes its pictures from.
enum class InputDeviceKind {
    InputDeviceVfW,
    InputDeviceDirectShow,
    InputDeviceOspreyCamera,
    InputDeviceLocalGraphic,
    InputDeviceWebGraphic,
};

/// One input device of the portfolio. Whatever its kind, it works as a video feed does.
class InputDevice : public VideoFeed {
public:
    InputDevice(SettingsOwner& owner, const PresentTime& present, const Tools& tools,
                InputDeviceKind kind = InputDeviceKind::InputDeviceVfW)
        : VideoFeed(owner, present, tools), kind_(kind) {}

    InputDeviceKind Kind() const { return kind_; }

    /// Closes the device and releases what it holds.
    void ClassUnload() { VideoFeedUnload(); }

private:
    InputDeviceKind kind_;
};

}  // namespace tessaloom
