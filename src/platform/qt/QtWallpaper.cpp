#include "platform/qt/QtWallpaper.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <QFile>
#include <QProcess>
#include <QTimer>
#include <QUrl>
#include <QVariantMap>
#include <algorithm>
#include <utility>

namespace tessaloom {

namespace {

constexpr int LimitMilliseconds = 30'000;  ///< For one program, or one answer of a service.

bool IsSet(const char* variable) { return !qEnvironmentVariableIsEmpty(variable); }

/// As a text within a script of the desktop.
QString Quoted(QString text) {
    return '"' + text.replace('\\', "\\\\").replace('"', "\\\"").replace('\n', "\\n") + '"';
}

}  // namespace

/// The desktops that have a way of their own, by the names under which sessions announce them.
struct QtWallpaper::DesktopWay {
    const char* name;
    Way way;
};

const QtWallpaper::DesktopWay QtWallpaper::Desktops[] = {
    {"GNOME",      &QtWallpaper::Gnome   },
    {"Unity",      &QtWallpaper::Gnome   },
    {"Budgie",     &QtWallpaper::Gnome   },
    {"Pantheon",   &QtWallpaper::Gnome   },
    {"X-Cinnamon", &QtWallpaper::Cinnamon},
    {"MATE",       &QtWallpaper::Mate    },
    {"KDE",        &QtWallpaper::Plasma  },
    {"XFCE",       &QtWallpaper::Xfce    },
};

QtWallpaper::QtWallpaper(std::function<void(const std::string&)> failed, WallpaperPrograms programs)
    : failed_(std::move(failed)), programs_(std::move(programs)) {}

QtWallpaper::~QtWallpaper() = default;

bool QtWallpaper::Set(std::string_view path) {
    if (WaysOfSession().empty()) return false;
    const QString file = QString::fromUtf8(path.data(), static_cast<qsizetype>(path.size()));
    if (Busy())
        pending_ = file;
    else
        Begin(file);
    return true;
}

/// A session may announce several names, the most special first. Desktops are asked in their own way before
/// the portal is, which may put a question to the person each time.
std::deque<QtWallpaper::Way> QtWallpaper::WaysOfSession() {
    std::deque<Way> ways;
    for (const QString& name : qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(':'))
        for (const DesktopWay& desktop : Desktops)
            if (name.compare(QLatin1String(desktop.name), Qt::CaseInsensitive) == 0)
                ways.push_back(desktop.way);
    const bool x11 = IsSet("DISPLAY"), wayland = IsSet("WAYLAND_DISPLAY");
    const bool session = IsSet("XDG_CURRENT_DESKTOP") || x11 || wayland;
    if (session && (IsSet("DBUS_SESSION_BUS_ADDRESS") || IsSet("XDG_RUNTIME_DIR")))
        ways.push_back(&QtWallpaper::Portal);
    if (x11 && !wayland) ways.push_back(&QtWallpaper::RootWindow);
    return ways;
}

std::string QtWallpaper::Means() {
    const std::deque<Way> ways = WaysOfSession();
    if (ways.empty()) return {};
    if (ways.front() == &QtWallpaper::Portal) return "the desktop portal";
    if (ways.front() == &QtWallpaper::RootWindow) return "the X11 root window";
    return std::ranges::find(Desktops, ways.front(), &DesktopWay::way)->name;
}

void QtWallpaper::Begin(const QString& path) {
    path_ = path;
    failure_.clear();
    ways_ = WaysOfSession();
    TryNext();
}

void QtWallpaper::TryNext() {
    calls_ = std::make_unique<QObject>();
    if (ways_.empty()) return End(false);
    const Way way = ways_.front();
    ways_.pop_front();
    (this->*way)();
}

void QtWallpaper::End(bool done) {
    if (!done && !ways_.empty()) {
        // Not at once: what is under way is told so by the object that is replaced.
        QTimer::singleShot(0, calls_.get(), [this] { TryNext(); });
        return;
    }
    if (!done && failed_) failed_("The wallpaper was not changed: " + failure_.toStdString());
    path_.clear();
    if (!pending_.isEmpty())
        QTimer::singleShot(0, calls_.get(), [this] { Begin(std::exchange(pending_, {})); });
}

void QtWallpaper::Run(const std::string& program, const QStringList& arguments, Then then) {
    auto* const process = new QProcess(calls_.get());
    const QString name = QString::fromStdString(program);
    const auto finish = [this, process, name, then = std::move(then)](bool done) {
        if (!done) failure_ = name + ": " + process->errorString();
        if (process->exitCode() != 0) failure_ = name + ": " + process->readAllStandardError().trimmed();
        process->disconnect();
        process->deleteLater();
        then(done, process->readAllStandardOutput());
    };
    QObject::connect(process, &QProcess::finished, calls_.get(),
                     [finish](int code, QProcess::ExitStatus status) {
                         finish(code == 0 && status == QProcess::NormalExit);
                     });
    QObject::connect(process, &QProcess::errorOccurred, calls_.get(), [finish](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) finish(false);
    });
    QTimer::singleShot(LimitMilliseconds, process, &QProcess::kill);
    process->start(name, arguments, QIODevice::ReadOnly);
}

/// Settings that only newer versions know may fail.
void QtWallpaper::SetByGsettings(const QStringList& first, const QStringList& second) {
    Run(programs_.gsettings, QStringList("set") + first, [this, second](bool done, const QByteArray&) {
        if (!done || second.isEmpty()) return End(done);
        Run(programs_.gsettings, QStringList("set") + second, [this](bool, const QByteArray&) { End(true); });
    });
}

void QtWallpaper::Gnome() {
    const QString schema = "org.gnome.desktop.background";
    SetByGsettings({schema, "picture-uri", Url()}, {schema, "picture-uri-dark", Url()});
}

void QtWallpaper::Cinnamon() {
    SetByGsettings({"org.cinnamon.desktop.background", "picture-uri", Url()}, {});
}

void QtWallpaper::Mate() { SetByGsettings({"org.mate.background", "picture-filename", path_}, {}); }

/// A picture whose name stays the same is read anew only when it was another one meanwhile.
void QtWallpaper::Plasma() {
    const QString script =
        "var all = desktops(); for (var i = 0; i < all.length; i++) { var d = all[i];"
        " d.wallpaperPlugin = 'org.kde.image';"
        " d.currentConfigGroup = ['Wallpaper', 'org.kde.image', 'General'];"
        " d.writeConfig('Image', ''); d.reloadConfig(); d.writeConfig('Image', " +
        Quoted(Url()) + "); d.reloadConfig(); }";
    Call("org.kde.plasmashell", "/PlasmaShell", "org.kde.PlasmaShell", "evaluateScript", {script});
}

/// Each monitor and workspace has a property of its own.
void QtWallpaper::Xfce() {
    Run(programs_.xfconfQuery, {"-c", "xfce4-desktop", "-p", "/backdrop", "-l"},
        [this](bool done, const QByteArray& output) {
            QStringList properties;
            for (const QString& line : QString::fromUtf8(output).split('\n'))
                if (line.trimmed().endsWith("/last-image")) properties.push_back(line.trimmed());
            if (done && properties.isEmpty()) failure_ = "xfce4-desktop has no property last-image";
            if (!done || properties.isEmpty()) return End(false);
            SetXfceProperties(std::move(properties));
        });
}

void QtWallpaper::SetXfceProperties(QStringList properties) {
    const QString property = properties.takeFirst();
    Run(programs_.xfconfQuery, {"-c", "xfce4-desktop", "-p", property, "-s", path_},
        [this, properties](bool done, const QByteArray&) {
            if (!done || properties.isEmpty()) return End(done);
            SetXfceProperties(properties);
        });
}

/// The portal takes no address of a local file, only the open file.
void QtWallpaper::Portal() {
    QFile file(path_);
    if (!file.open(QIODevice::ReadOnly)) {
        failure_ = path_ + ": " + file.errorString();
        return End(false);
    }
    const QVariantMap options{
        {"show-preview", false       },
        {"set-on",       "background"}
    };
    Call("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
         "org.freedesktop.portal.Wallpaper", "SetWallpaperFile",
         {QString(), QVariant::fromValue(QDBusUnixFileDescriptor(file.handle())), options});
}

void QtWallpaper::RootWindow() {
    Run(programs_.feh, {"--bg-fill", path_}, [this](bool done, const QByteArray&) { End(done); });
}

void QtWallpaper::Call(const char* service, const char* object, const char* interface, const char* method,
                       const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(service, object, interface, method);
    message.setArguments(arguments);
    const QDBusPendingCall call = QDBusConnection::sessionBus().asyncCall(message, LimitMilliseconds);
    auto* const watcher = new QDBusPendingCallWatcher(call, calls_.get());
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, calls_.get(), [this, service, watcher] {
        if (watcher->isError()) failure_ = QString(service) + ": " + watcher->error().message();
        End(!watcher->isError());
    });
}

QString QtWallpaper::Url() const { return QUrl::fromLocalFile(path_).toString(QUrl::FullyEncoded); }

}  // namespace tessaloom
