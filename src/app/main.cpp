#include <unistd.h>

#include <QGuiApplication>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <span>
#include <variant>

#include "app/CommandLine.h"
#include "app/Commands.h"
#include "app/LineLog.h"
#include "app/ScriptServices.h"
#include "app/Services.h"
#include "app/Signals.h"
#include "core/ErrorReport.h"
#include "core/Log.h"
#include "core/RunFlags.h"
#include "core/Version.h"
#include "core/main/modMain.h"

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

int Run(QCoreApplication& application, Platform& platform, const CommandLine& line) {
    ScriptServices scripts(platform);
    modMain::StartOptions options;
    options.scripts = &scripts.Engine();
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
    return application.exec();
}

int Act(QCoreApplication& application, Platform& platform, const CommandLine& line) {
    switch (line.action) {
        case CommandLine::Action::Render:
            return RenderCanvas(platform, line.canvas, line.out);
        case CommandLine::Action::Check:
            return CheckDocumentFile(platform, line.check);
        case CommandLine::Action::ListDevices:
            return ListDevices(platform);
        default:
            return Run(application, platform, line);
    }
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
    // Vector pictures draw their texts with the toolkit's fonts, which a program without windows has only so.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    int status = ExitStatus::Failure;
    Trap({"modMain.bas", "Main"}, [&] {
        Services services([] { QCoreApplication::quit(); });
        status = Act(application, services.All(), line);
    });
    qInstallMessageHandler(nullptr);
    SetErrorReporter({});
    SetLogSink({});
    return status;
}

}  // namespace
}  // namespace tessaloom

int main(int argc, char** argv) { return tessaloom::Main(argc, argv); }
