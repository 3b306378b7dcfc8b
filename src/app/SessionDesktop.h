#pragma once

#include <string_view>

#include "core/Log.h"
#include "platform/posix/HeadlessDesktop.h"
#include "platform/qt/QtWallpaper.h"

namespace tessaloom {

/// The desktop session that the program was started in, if any: a program without windows, too, can change
/// the wallpaper there.
class SessionDesktop final : public HeadlessDesktop {
public:
    bool SetWallpaper(std::string_view path) override { return wallpaper_.Set(path); }

private:
    QtWallpaper wallpaper_{[](const std::string& message) { Log(LogLevel::Warning, message); }};
};

}  // namespace tessaloom
