#include <unistd.h>

#include <QApplication>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <memory>
#include <span>
#include <variant>

#include "app/CommandLine.h"
#include "app/Commands.h"
#include "app/HeadlessDialogs.h"
#include "app/HeadlessMainWindow.h"
#include "app/LineLog.h"
#include "app/ScriptServices.h"
#include "app/Services.h"
#include "app/Signals.h"
#include "core/ErrorReport.h"
#include "core/Log.h"
#include "core/RunFlags.h"
#include "core/Version.h"
#include "core/main/modMain.h"
#include "ui/DesktopApplication.h"
#include "ui/DesktopFrontEnd.h"

namespace tessaloom {
namespace {

void WriteToStandardError(const std::string& line) {
    const std::string text = line + "\n";
    std::fwrite(text.data(), 1, text.size(), stderr);
}

void LogReport(const ErrorReport& report) {
    Log(LogLevel::Error, std::string(ErrorReport::Title) + ": " + report.Text());
}

/// What the toolkit grumbles about, such as a damaged picture or a missing folder of the session, is told by
/// ourselves where it matters.
void LogToolkitMessage(QtMsgType type, const QMessageLogContext&, const QString& text) {
    const bool pressing = type == QtCriticalMsg || type == QtFatalMsg;
    Log(pressing ? LogLevel::Error : LogLevel::Debug, text.toStdString());
}

/// A portfolio named on the command line that cannot work at all: missing, unreadable or not text.
bool Usable(Platform& platform, const std::string& portfolio) {
    switch (platform.profile.State(portfolio)) {
        case ProfileState::Missing:
            Log(LogLevel::Critical, "There is no portfolio " + portfolio);
            return false;
        case ProfileState::Unreadable:
            Log(LogLevel::Critical, "Cannot read the portfolio " + portfolio);
            return false;
        case ProfileState::NotText:
            Log(LogLevel::Critical, portfolio + " is not a portfolio");
            return false;
        case ProfileState::Readable:
            break;
    }
    return true;
}

/// `path` in full, as documents and settings remember it.
std::string FullPath(const FileSystem& files, const std::string& path) {
    const bool full = path.starts_with('/') || path.starts_with('\\');
    return full ? path : JoinPath(files.CurrentFolder(), path);
}

int Run(Platform& platform, CanvasViewFactory views, const CommandLine& line) {
    ScriptServices scripts(platform);
    modMain::StartOptions options;
    options.scripts = &scripts.Engine();
    options.views = std::move(views);
    if (!line.portfolio.empty()) {
        if (!Usable(platform, line.portfolio)) return ExitStatus::UnusableDocument;
        options.portfolio = FullPath(platform.fileSystem, line.portfolio);
    }
    const Signals signals({
        .end =
            [] {
                Flags().withoutQuestions = true;
                Flags().running = false;
            },
        .reload = [] { modMain::ReloadSources(); },
        .force = [] { modMain::ForceEverything(); },
    });
    if (!modMain::Main(platform, options)) return Flags().quitDuringStartup ? 0 : ExitStatus::Failure;
    return QCoreApplication::exec();
}

int Act(Platform& platform, const CommandLine& line) {
    switch (line.action) {
        case CommandLine::Action::Render:
            return RenderCanvas(platform, line.canvas, line.out);
        case CommandLine::Action::Check:
            return CheckDocumentFile(platform, line.check);
        case CommandLine::Action::ListDevices:
            return ListDevices(platform);
        default:
            return Run(platform, {}, line);
    }
}

/// The program as a server: without windows.
int ActHeadless(const CommandLine& line) {
    HeadlessDialogs dialogs;
    HeadlessMainWindow mainWindow([] { QCoreApplication::exit(); });
    Services services(dialogs, mainWindow);
    return Act(services.All(), line);
}

int RunOnDesktop(const CommandLine& line) {
    DesktopFrontEnd desktop([] { QCoreApplication::exit(); });
    Services services(desktop.Dialogs(), desktop.MainWindow());
    desktop.Connect(services.All());
    struct Reporting {
        ~Reporting() { SetErrorReporter(LogReport); }
    } const whileTheDesktopIsThere;
    SetErrorReporter([&desktop](const ErrorReport& report) {
        LogReport(report);
        desktop.AddReport(report);
    });
    return Run(services.All(), desktop.Views(), line);
}

/// The application object, for a display where the program is to run on one.
std::unique_ptr<QGuiApplication> MakeApplication(const CommandLine& line, int& argc, char** argv) {
    if (line.action == CommandLine::Action::Run && !line.headless) {
        if (DesktopApplication::PrepareDisplay()) return std::make_unique<DesktopApplication>(argc, argv);
        Log(LogLevel::Notice, "There is no display: running without windows");
    }
    // Vector pictures draw their texts with the toolkit's fonts, which a program without windows has only so.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return std::make_unique<QGuiApplication>(argc, argv);
}

bool OnDesktop(const QGuiApplication& application) {
    if (!qobject_cast<const DesktopApplication*>(&application)) return false;
    if (DesktopApplication::HasDisplay()) return true;
    Log(LogLevel::Notice, "The display cannot be reached: running without windows");
    return false;
}

int Main(int argc, char** argv) {
    const auto parsed =
        ParseCommandLine(std::span<const char* const>(argv + 1, static_cast<std::size_t>(argc - 1)));
    if (const auto* wrong = std::get_if<std::string>(&parsed)) {
        std::cerr << "tessaloom: " << *wrong << "\nTry --help.\n";
        return ExitStatus::BadArguments;
    }
    const CommandLine& line = std::get<CommandLine>(parsed);
    if (line.action == CommandLine::Action::Version || line.action == CommandLine::Action::Help) {
        std::cout << (line.action == CommandLine::Action::Help ? CommandLine::Usage()
                                                               : "Tessaloom " + std::string(Version) + "\n");
        return ExitStatus::Success;
    }
    if (!line.home.empty() && chdir(line.home.c_str()) != 0) {
        std::cerr << "tessaloom: cannot enter " << line.home << ": " << std::strerror(errno) << '\n';
        return ExitStatus::Failure;
    }

    LineLog log(line.logLevel, WriteToStandardError);
    SetLogSink([&log](LogLevel level, std::string_view text) { log.Write(level, text); });
    SetErrorReporter(LogReport);
    qInstallMessageHandler(LogToolkitMessage);
    const std::unique_ptr<QGuiApplication> application = MakeApplication(line, argc, argv);
    int status = ExitStatus::Failure;
    Trap({"modMain.bas", "Main"},
         [&] { status = OnDesktop(*application) ? RunOnDesktop(line) : ActHeadless(line); });
    qInstallMessageHandler(nullptr);
    SetErrorReporter({});
    SetLogSink({});
    return status;
}

}  // namespace
}  // namespace tessaloom

int main(int argc, char** argv) {
    const int status = tessaloom::Main(argc, argv);
    if (std::cout.flush()) return status;
    std::cerr << "tessaloom: the results cannot be written: " << std::strerror(errno) << '\n';
    return tessaloom::ExitStatus::Failure;
}
