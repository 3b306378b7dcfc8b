#include "platform/qt/QtWallpaper.h"

#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDeadlineTimer>

#include "support/ServerProgram.h"
#include "support/TemporaryFolder.h"

namespace tessaloom::testing {
namespace {

/// The environment variables by which a session shows; all others are taken away.
void BeginSession(const std::map<std::string, std::string>& variables) {
    for (const char* name : {"XDG_CURRENT_DESKTOP", "DISPLAY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS",
                             "XDG_RUNTIME_DIR", "GSETTINGS_BACKEND", "XDG_CONFIG_HOME"})
        unsetenv(name);
    for (const auto& [name, value] : variables) setenv(name.c_str(), value.c_str(), 1);
}

struct Desk {
    int count = 0;
    QCoreApplication application{count, nullptr};
    TemporaryFolder folder;
    std::string failure;

    std::string Calls() const { return BytesOf(folder / "calls"); }

    /// A program that notes how it was called; then `script` runs.
    std::string Recorder(const std::string& name, const std::string& script) const {
        const std::string file = folder / name;
        std::ofstream(file) << "#!/bin/sh\necho " << name << " \"$@\" >> '" << (folder / "calls") << "'\n"
                            << script;
        ::chmod(file.c_str(), 0755);
        return file;
    }
    WallpaperPrograms Recorders() const {
        return {Recorder("gsettings", "exit 0\n"),
                Recorder("xfconf",
                         "[ $# = 5 ] && printf "
                         "'/backdrop/a/last-image\\n/backdrop/a/style\\n/backdrop/b/last-image\\n'"
                         "\nexit 0\n"),
                Recorder("feh", "exit 0\n")};
    }
    static void WaitFor(const QtWallpaper& wallpaper) {
        for (QDeadlineTimer end(60'000); wallpaper.Busy() && !end.hasExpired();)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
    }
    auto Failed() {
        return [this](const std::string& message) { failure = message; };
    }
};

TEST(QtWallpaper, AsksEachDesktopInItsWay) {
    Desk at;
    const std::string path = "/home/a b/T.bmp", url = "file:///home/a%20b/T.bmp";
    const std::string gnome = "gsettings set org.gnome.desktop.background picture-uri " + url +
                              "\ngsettings set org.gnome.desktop.background picture-uri-dark " + url + "\n";
    const std::string xfce =
        "xfconf -c xfce4-desktop -p /backdrop -l\n"
        "xfconf -c xfce4-desktop -p /backdrop/a/last-image -s " +
        path + "\nxfconf -c xfce4-desktop -p /backdrop/b/last-image -s " + path + "\n";
    const std::string feh = "feh --bg-fill " + path + "\n";
    const struct {
        std::map<std::string, std::string> session;
        bool possible;
        std::string calls;
    } rows[] = {
        {{},                                                           false, ""                                                                       },
        {{{"XDG_RUNTIME_DIR", "/nowhere"}},                            false, ""                                                                       },
        {{{"XDG_CURRENT_DESKTOP", "ubuntu:GNOME"}, {"DISPLAY", ":9"}}, true,  gnome                                                                    },
        {{{"XDG_CURRENT_DESKTOP", "XFCE"}, {"DISPLAY", ":9"}},         true,  xfce                                                                     },
        {{{"XDG_CURRENT_DESKTOP", "MATE"}},
         true,                                                                "gsettings set org.mate.background picture-filename " + path + "\n"      },
        {{{"XDG_CURRENT_DESKTOP", "X-Cinnamon"}},
         true,                                                                "gsettings set org.cinnamon.desktop.background picture-uri " + url + "\n"},
        {{{"XDG_CURRENT_DESKTOP", "i3"}, {"DISPLAY", ":9"}},           true,  feh                                                                      },
        {{{"DISPLAY", ":9"}},                                          true,  feh                                                                      },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.session.empty() ? "" : row.session.rbegin()->second + row.session.begin()->second);
        BeginSession(row.session);
        std::ofstream(at.folder / "calls");
        QtWallpaper wallpaper(at.Failed(), at.Recorders());
        EXPECT_EQ(wallpaper.Set(path), row.possible);
        Desk::WaitFor(wallpaper);
        EXPECT_EQ(at.Calls(), row.calls);
    }
    EXPECT_EQ(at.failure, "");

    // A way that fails is followed by the next, a file that comes meanwhile by none but the newest.
    BeginSession({
        {"XDG_CURRENT_DESKTOP", "GNOME"},
        {"DISPLAY",             ":9"   }
    });
    std::ofstream(at.folder / "calls");
    WallpaperPrograms programs = at.Recorders();
    programs.gsettings = "/nowhere/gsettings";
    {
        QtWallpaper wallpaper(at.Failed(), programs);
        for (const char* file : {"/1", "/2", "/3"}) EXPECT_TRUE(wallpaper.Set(file));
        while (at.Calls() != "feh --bg-fill /1\nfeh --bg-fill /3\n" && wallpaper.Busy()) {
            Desk::WaitFor(wallpaper);
            QCoreApplication::processEvents();
        }
        EXPECT_EQ(at.Calls(), "feh --bg-fill /1\nfeh --bg-fill /3\n");
    }
    programs.feh = at.Recorder("broken", "echo no display >&2\nexit 3\n");
    QtWallpaper wallpaper(at.Failed(), programs);
    EXPECT_TRUE(wallpaper.Set("/1"));
    Desk::WaitFor(wallpaper);
    EXPECT_EQ(at.failure, "The wallpaper was not changed: " + programs.feh + ": no display");
}

TEST(QtWallpaper, ChangesTheSettingsOfGnome) {
    Desk at;
    BeginSession({
        {"XDG_CURRENT_DESKTOP", "GNOME"         },
        {"GSETTINGS_BACKEND",   "keyfile"       },
        {"XDG_CONFIG_HOME",     at.folder.Path()}
    });
    QtWallpaper wallpaper(at.Failed());
    EXPECT_TRUE(wallpaper.Set("/a/T.bmp"));
    Desk::WaitFor(wallpaper);
    EXPECT_EQ(at.failure, "");
    EXPECT_NE(BytesOf(at.folder / "glib-2.0/settings/keyfile").find("picture-uri='file:///a/T.bmp'"),
              std::string::npos);
}

/// Waits until `done`; false when that takes too long even for a busy machine.
template <typename Done>
bool Comes(Done done) {
    for (QDeadlineTimer end(60'000); !end.hasExpired();) {
        if (done()) return true;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
        ::poll(nullptr, 0, 5);
    }
    return false;
}

TEST(QtWallpaper, CallsTheServicesOfTheSession) {
    Desk at;
    const std::string address = "unix:path=" + (at.folder / "bus");
    ServerProgram bus({"dbus-daemon", "--session", "--nofork", "--nosyslog", "--address=" + address});
    ASSERT_TRUE(Comes([&] { return ::access((at.folder / "bus").c_str(), F_OK) == 0; }));
    const std::string file = at.folder / "T.bmp";
    std::ofstream(file) << "BM";
    const struct {
        const char *desktop, *service, *object, *interface, *method, *signature;
        std::string call;
    } rows[] = {
        {"sway", "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
         "org.freedesktop.portal.Wallpaper",                                                                 "SetWallpaperFile", "sha{sv}",
         "{\"set-on\": \"background\", \"show-preview\": False}"},
        {"KDE",  "org.kde.plasmashell",            "/PlasmaShell",                    "org.kde.PlasmaShell", "evaluateScript",   "s",
         "d.writeConfig('Image', \"file://" + file + "\")"      },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.desktop);
        BeginSession({
            {"XDG_CURRENT_DESKTOP",      row.desktop},
            {"DBUS_SESSION_BUS_ADDRESS", address    }
        });
        ServerProgram service({"/usr/bin/python3", "-m", "dbusmock", "-l", at.folder / row.desktop,
                               row.service, row.object, row.interface});
        ASSERT_EQ(ServerProgram({"gdbus", "wait", "--session", "--timeout=60", row.service}).Wait(), 0);
        ASSERT_EQ(ServerProgram({"gdbus", "call", "--session", "--dest", row.service, "--object-path",
                                 row.object, "--method", "org.freedesktop.DBus.Mock.AddMethod", row.interface,
                                 row.method, row.signature, "", ""})
                      .Wait(),
                  0);
        QtWallpaper wallpaper(at.Failed(), at.Recorders());
        EXPECT_TRUE(wallpaper.Set(file));
        Desk::WaitFor(wallpaper);
        EXPECT_EQ(at.failure, "");
        EXPECT_TRUE(Comes([&] {
            return BytesOf(at.folder / row.desktop).find(row.call) != std::string::npos;
        })) << BytesOf(at.folder / row.desktop);
    }
    // Nobody there: told at once.
    BeginSession({
        {"XDG_CURRENT_DESKTOP",      "sway" },
        {"DBUS_SESSION_BUS_ADDRESS", address}
    });
    QtWallpaper wallpaper(at.Failed(), at.Recorders());
    EXPECT_TRUE(wallpaper.Set(file));
    Desk::WaitFor(wallpaper);
    EXPECT_NE(at.failure.find("org.freedesktop.portal.Desktop"), std::string::npos) << at.failure;
}

TEST(QtWallpaper, PaintsTheRootWindow) {
    constexpr int Width = 64, Height = 48, Bytes = Width * Height * 4;
    Desk at;
    const std::string number = at.folder / "number";
    ServerProgram server({"/bin/sh", "-c",
                          "exec Xvfb -displayfd 3 -noreset -nolisten tcp -screen 0 64x48x24 -fbdir '" +
                              at.folder.Path() + "' 3>'" + number + "'"});
    ASSERT_TRUE(Comes([&] { return BytesOf(number).ends_with('\n'); }));
    std::string display = ":" + BytesOf(number);
    display.pop_back();
    BeginSession({
        {"DISPLAY", display}
    });

    const std::string picture = at.folder / "T.bmp";
    {
        std::ofstream file(picture, std::ios::binary);
        file << std::string("BM\0\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\x40\0\0\0\x30\0\0\0\1\0\x18\0", 30)
             << std::string(24, '\0');
        for (int i = 0; i < Width * Height; ++i) file << "\xCC\x66\x33";
    }
    QtWallpaper wallpaper(at.Failed());
    EXPECT_TRUE(wallpaper.Set(picture));
    Desk::WaitFor(wallpaper);
    EXPECT_EQ(at.failure, "");
    EXPECT_TRUE(Comes([&] {
        const std::string screen = BytesOf(at.folder / "Xvfb_screen0");
        return screen.size() > Bytes && screen.substr(screen.size() - Bytes + Bytes / 2, 3) == "\xCC\x66\x33";
    }));
}

}  // namespace
}  // namespace tessaloom::testing
