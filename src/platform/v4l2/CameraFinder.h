#pragma once

#include <string>
#include <vector>

#include "platform/v4l2/DeviceCalls.h"

namespace tessaloom {

/// A camera that is plugged in.
struct Camera {
    std::string name;    ///< As it calls itself; equal cameras have equal names.
    std::string stable;  ///< By which the same one is known after it was plugged in anew.
    std::string node;    ///< The path of its device file now.
};

/// Finds the cameras of this machine.
class CameraFinder {
public:
    /// folder: of the device files, without a trailing "/".
    CameraFinder(DeviceCalls calls, std::string folder)
        : calls_(std::move(calls)), folder_(std::move(folder)) {}

    const DeviceCalls& Calls() const { return calls_; }

    /// In the order of their stable names, so that equal ones keep their places when the machine starts anew.
    std::vector<Camera> Present() const;

    /// The camera of that name in the list: "(2) " before the second of equal ones. A path names itself.
    /// An empty node: there is none now.
    Camera Find(const std::string& numberedName) const;

private:
    std::string StableName(const std::string& node) const;

    DeviceCalls calls_;
    std::string folder_;
};

}  // namespace tessaloom
