#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace tessaloom {

/// The programs to call, by name or path.
struct WallpaperPrograms {
    std::string gsettings = "gsettings";       ///< GNOME and its relatives.
    std::string xfconfQuery = "xfconf-query";  ///< XFCE.
    std::string feh = "feh";                   ///< X11 without a desktop.
};

/// Makes a picture file the wallpaper of the desktop session that this program runs in: with the desktop's
/// own program or service, else with the portal that all desktops share, else on the plain X11 root window.
///
/// Needs the application object and its event loop. Programs run beside us and are ended after half a minute.
class QtWallpaper {
public:
    /// failed: told why when no way led to a new wallpaper.
    explicit QtWallpaper(std::function<void(const std::string&)> failed, WallpaperPrograms programs = {});
    ~QtWallpaper();
    QtWallpaper(const QtWallpaper&) = delete;
    QtWallpaper& operator=(const QtWallpaper&) = delete;

    /// Begins to make the file `path` (absolute) the wallpaper; when that is under way for another file, does
    /// so next. False without a desktop session.
    bool Set(std::string_view path);

    /// The way that `Set` tries first, by name: "GNOME", "the desktop portal"; "" without a desktop session.
    static std::string Means();

    bool Busy() const { return !path_.isEmpty(); }

private:
    using Way = void (QtWallpaper::*)();
    using Then = std::function<void(bool done, const QByteArray& output)>;
    struct DesktopWay;
    static const DesktopWay Desktops[];

    static std::deque<Way> WaysOfSession();
    void Begin(const QString& path);
    void TryNext();
    void End(bool done);
    void Run(const std::string& program, const QStringList& arguments, Then then);
    void SetByGsettings(const QStringList& first, const QStringList& second);
    void SetXfceProperties(QStringList properties);
    void Call(const char* service, const char* object, const char* interface, const char* method,
              const QVariantList& arguments);
    QString Url() const;

    void Gnome();
    void Cinnamon();
    void Mate();
    void Plasma();
    void Xfce();
    void Portal();
    void RootWindow();

    std::function<void(const std::string&)> failed_;
    WallpaperPrograms programs_;
    QString path_;     ///< Of the file being made the wallpaper; empty: none.
    QString pending_;  ///< The one after it.
    QString failure_;  ///< Of the ways tried so far.
    std::deque<Way> ways_;
    std::unique_ptr<QObject> calls_;  ///< What is under way lives no longer.
};

}  // namespace tessaloom
