#include "platform/v4l2/CameraFinder.h"

#include <linux/videodev2.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "platform/v4l2/Device.h"

namespace tessaloom {

namespace {

namespace fs = std::filesystem;

/// Where the system keeps lasting names, the better kind first. The second tells apart equal cameras without
/// serial numbers by where they are plugged in.
constexpr const char* StableFolders[] = {"/v4l/by-id", "/v4l/by-path"};

std::vector<fs::path> Entries(const fs::path& folder) {
    std::vector<fs::path> entries;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        entries.push_back(entry->path());
    std::ranges::sort(entries);
    return entries;
}

/// The name of a device that captures pictures and streams them, else "".
std::string NameOf(const Device& device) {
    v4l2_capability capability{};
    if (!device.IsOpen() || !device.Do(VIDIOC_QUERYCAP, &capability)) return {};
    const bool own = capability.capabilities & V4L2_CAP_DEVICE_CAPS;
    const std::uint32_t can = own ? capability.device_caps : capability.capabilities;
    constexpr std::uint32_t Needed = V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_STREAMING;
    if ((can & Needed) != Needed) return {};
    const auto* card = reinterpret_cast<const char*>(capability.card);
    const std::string name(card, strnlen(card, sizeof capability.card));
    return name.empty() ? "Camera" : name;
}

}  // namespace

std::vector<Camera> CameraFinder::Present() const {
    std::vector<Camera> cameras;
    for (const fs::path& entry : Entries(folder_)) {
        const std::string node = entry.string();
        if (!entry.filename().string().starts_with("video")) continue;
        const Device device(calls_, node);
        if (const std::string name = NameOf(device); !name.empty())
            cameras.push_back({name, StableName(node), node});
    }
    std::ranges::sort(cameras, {}, &Camera::stable);
    return cameras;
}

std::string CameraFinder::StableName(const std::string& node) const {
    for (const char* folder : StableFolders)
        for (const fs::path& link : Entries(folder_ + folder)) {
            std::error_code error;
            if (fs::equivalent(link, node, error)) return link.string();
        }
    return node;
}

Camera CameraFinder::Find(const std::string& numberedName) const {
    if (numberedName.starts_with('/')) return {numberedName, numberedName, numberedName};
    const std::vector<Camera> cameras = Present();
    for (const Camera& camera : cameras) {
        const auto equal = [&](const Camera& other) { return other.name == camera.name; };
        const auto place = std::count_if(cameras.data(), &camera + 1, equal);
        const std::string numbered = "(" + std::to_string(place) + ") " + camera.name;
        const bool alone = std::ranges::count_if(cameras, equal) == 1;
        // A lone camera answers to its bare name, the first of several to both.
        if (numberedName == numbered || (numberedName == camera.name && (alone || place == 1))) return camera;
    }
    return {};
}

}  // namespace tessaloom
