#pragma once

#include <string>
#include <string_view>

namespace tessaloom {

/// The desktop that the program runs on.
class Desktop {
public:
    virtual ~Desktop() = default;

    /// Makes the bitmap file `path` the wallpaper, for good. False when this desktop cannot.
    virtual bool SetWallpaper(std::string_view path) = 0;

    /// What changes the wallpaper of this desktop: "GNOME", "the desktop portal". "" when nothing does.
    virtual std::string WallpaperMeans() const { return {}; }

    /// Sounds the system beep.
    virtual void Beep() = 0;

    /// The folder for this user's data of this program, made when missing; no trailing separator. "" without
    /// one.
    virtual std::string UserDataFolder() const = 0;

    /// Claims `folder` for this process until it ends; false when another instance holds it.
    virtual bool ClaimInstance(std::string_view folder) = 0;
};

}  // namespace tessaloom
