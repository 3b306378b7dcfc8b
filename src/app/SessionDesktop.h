#pragma once

#include <QApplication>
#include <string_view>

#include "core/Log.h"
#include "platform/posix/HeadlessDesktop.h"
#include "platform/qt/QtWallpaper.h"

namespace tessaloom {

/// The desktop session that the program was started in, if any: a program without windows, too, can change
/// the wallpaper there; only one with windows beeps.
class SessionDesktop final : public HeadlessDesktop {
public:
    bool SetWallpaper(std::string_view path) override { return wallpaper_.Set(path); }
    std::string WallpaperMeans() const override { return QtWallpaper::Means(); }
    void Beep() override {
        if (qobject_cast<QApplication*>(QCoreApplication::instance())) QApplication::beep();
    }

private:
    QtWallpaper wallpaper_{[](const std::string& message) { Log(LogLevel::Warning, message); }};
};

}  // namespace tessaloom
