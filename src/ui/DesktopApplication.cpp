#include "ui/DesktopApplication.h"

#include <string_view>

#include "core/ErrorReport.h"
#include "ui/ProgramIcon.h"

namespace tessaloom {

namespace {

constexpr const char* PlatformVariable = "QT_QPA_PLATFORM";

/// What the toolkit draws into where no display can be reached; only tests ask for it themselves.
constexpr const char* Nowhere = "offscreen";

bool askedForNowhere = false;

}  // namespace

DesktopApplication::DesktopApplication(int& argc, char** argv) : QApplication(argc, argv) {
    setApplicationName("Tessaloom");
    // Else the toolkit puts the program's name behind the title of every box.
    setApplicationDisplayName("");
    setDesktopFileName("tessaloom");
    setWindowIcon(ProgramIcon());
    // The main window may be in the tray while the last set-up window closes.
    setQuitOnLastWindowClosed(false);
}

bool DesktopApplication::notify(QObject* receiver, QEvent* event) {
    return Trap({"frmMain.frm", "notify"}, [&] { return QApplication::notify(receiver, event); });
}

bool DesktopApplication::PrepareDisplay() {
    if (!qEnvironmentVariableIsEmpty(PlatformVariable)) {
        askedForNowhere = qgetenv(PlatformVariable) == Nowhere;
        return true;
    }
    const bool x11 = !qEnvironmentVariableIsEmpty("DISPLAY");
    const bool wayland = !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (!x11 && !wayland) return false;
    // The toolkit ends the process when none of these can be reached; the last one always can.
    QByteArray kinds = wayland && !(x11 && qgetenv("XDG_SESSION_TYPE") == "x11") ? "wayland;" : "";
    if (x11) kinds += "xcb;";
    qputenv(PlatformVariable, kinds + Nowhere);
    return true;
}

bool DesktopApplication::HasDisplay() { return askedForNowhere || platformName() != Nowhere; }

}  // namespace tessaloom
