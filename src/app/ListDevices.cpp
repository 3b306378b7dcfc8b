#include <algorithm>
#include <filesystem>
#include <iostream>
#include <system_error>
#include <vector>

#include "app/Commands.h"
#include "platform/FileSystem.h"
#include "platform/Platform.h"

namespace tessaloom {

namespace {

/// Where the kernel lists its video devices, each a folder with the device's name in a file.
constexpr const char* DeviceFolder = "/sys/class/video4linux";

struct Device {
    int number = 0;
    std::string name;
};

std::string FirstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

std::vector<Device> Devices(FileSystem& files) {
    namespace fs = std::filesystem;
    std::vector<Device> devices;
    std::error_code error;
    for (fs::directory_iterator entry(DeviceFolder, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string node = entry->path().filename().string();
        if (!node.starts_with("video")) continue;
        const std::string name = files.ReadFile((entry->path() / "name").string()).value_or("");
        devices.push_back({std::atoi(node.c_str() + 5), FirstLine(name)});
    }
    std::sort(devices.begin(), devices.end(),
              [](const Device& a, const Device& b) { return a.number < b.number; });
    return devices;
}

/// The name, with its place among the devices that bear the same one: "(2) Camera".
std::string NumberedName(const std::vector<Device>& devices, std::size_t which) {
    const auto same = [&](const Device& device) { return device.name == devices[which].name; };
    if (std::count_if(devices.begin(), devices.end(), same) < 2) return devices[which].name;
    const auto upToThis = devices.begin() + static_cast<std::ptrdiff_t>(which) + 1;
    return "(" + std::to_string(std::count_if(devices.begin(), upToThis, same)) + ") " + devices[which].name;
}

}  // namespace

int ListDevices(Platform& platform) {
    const std::vector<Device> devices = Devices(platform.fileSystem);
    for (std::size_t i = 0; i < devices.size(); ++i)
        std::cout << NumberedName(devices, i) << "\t/dev/video" << devices[i].number << '\n';
    return ExitStatus::Success;
}

}  // namespace tessaloom
