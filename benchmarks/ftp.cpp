// Uploads of 20 MB to a server on this machine, driven by the program's tick of 10 ms: how fast, how late
// that makes the ticks, and how fast the curl program is.

#include <QCoreApplication>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "benchmarks/Effort.h"
#include "platform/curl/CurlFtpClients.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/qt/QtSystemTime.h"
#include "platform/qt/QtTimer.h"
#include "publish/InetFTP.h"
#include "support/FtpServers.h"
#include "time/modTime.h"

namespace tessaloom {
namespace {

using Clock = std::chrono::steady_clock;
using testing::FtpServer;

constexpr std::size_t Bytes = 20'000'000;
constexpr int TickMilliseconds = 10;

double MillisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double Quantile(std::vector<double> values, double part) {
    std::ranges::sort(values);
    return values[static_cast<std::size_t>(std::ceil(part * static_cast<double>(values.size() - 1)))];
}

double MegabytesPerSecond(double milliseconds) { return double(Bytes) / 1000 / milliseconds; }

std::vector<std::uint8_t> Picture() {
    std::vector<std::uint8_t> bytes(Bytes);
    std::minstd_rand random;
    for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random() >> 8);
    return bytes;
}

/// How late the ticks are, beside how late they would be.
class TickWatch {
public:
    void Restart() { last_.reset(); }
    void Tick() {
        const auto now = Clock::now();
        if (last_)
            lateness_.push_back(std::max(
                0.0, std::chrono::duration<double, std::milli>(now - *last_).count() - TickMilliseconds));
        last_ = now;
    }
    std::size_t Ticks() const { return lateness_.size(); }
    void Print(const char* name) const {
        std::printf(
            "%-6s lateness of %zu ticks: 50 %% %.2f ms, 99 %% %.2f ms, 99.9 %% %.2f ms, most %.2f ms\n", name,
            Ticks(), Quantile(lateness_, 0.5), Quantile(lateness_, 0.99), Quantile(lateness_, 0.999),
            Quantile(lateness_, 1));
    }

private:
    std::optional<Clock::time_point> last_;
    std::vector<double> lateness_;  // milliseconds
};

/// One upload after the other, moved along by ticks only.
class Run {
public:
    Run(const FtpServer& server, std::vector<std::uint8_t> picture)
        : clients_({server.CertificateFile(), ""}), picture_(std::move(picture)) {
        ftp_.SetAccount(server.Account(true));
        Send();
        timer_.Start(TickMilliseconds, [this] { Tick(); });
    }

    std::vector<double> uploads;  ///< Milliseconds.
    TickWatch ticks;
    bool failed = false;

private:
    void Send() {
        ftp_.SendDataFile(picture_, {.remoteFolder = "up",
                                     .remoteFile = "live.jpg",
                                     .canvasIndex = 1,
                                     .mode = InetFTP::RenameOver,
                                     .keepConnectionOpen = true});
        storing_.reset();
        // Writing the local copy is not counted: the next tick begins a new series.
        ticks.Restart();
    }

    void Tick() {
        ticks.Tick();
        clients_.Poll();
        ftp_.TimerEvent();
        if (!storing_ && ftp_.Stage() == "Storing") storing_ = Clock::now();
        if (ftp_.CurrentState() == InetFTP::State::Disconnected) failed = true;
        if (failed) return QCoreApplication::quit();
        if (ftp_.CurrentState() != InetFTP::State::ConnectedWaiting) return;
        uploads.push_back(MillisecondsSince(*storing_));
        if (uploads.size() == Effort<std::size_t>(150, 2)) return QCoreApplication::quit();
        Send();
    }

    PosixFileSystem files_;
    CurlFtpClients clients_;
    InetFTP ftp_{files_, clients_};
    std::vector<std::uint8_t> picture_;
    QtTimer timer_;
    std::optional<Clock::time_point> storing_;
};

void Measure(QCoreApplication& application, FtpServer::Kind kind, const char* name, const char* options) {
    const FtpServer server(kind);
    if (!server.Runs()) {
        std::printf("%s: the server does not run here\n", name);
        return;
    }
    const std::vector<std::uint8_t> picture = Picture();
    Run run(server, picture);
    application.exec();
    if (run.failed) {
        std::printf("%s: an upload failed\n", name);
        return;
    }

    const std::string file = server.Folder() + "/../picture";
    std::ofstream(file, std::ios::binary).write(reinterpret_cast<const char*>(picture.data()), Bytes);
    std::string address = server.Account(true).server;
    address.replace(0, address.find("://"), "ftp");
    const std::string command = "curl -s " + std::string(options) + " --cacert '" + server.CertificateFile() +
                                "' -T '" + file + "' -u anonymous:guest '" + address + "/up/curl'";
    std::vector<double> peer;
    for (int i = 0; i < Effort(20, 2); ++i) {
        const auto start = Clock::now();
        if (std::system(command.c_str()) != 0) return;
        peer.push_back(MillisecondsSince(start));
    }
    const double ours = Quantile(run.uploads, 0.5), theirs = Quantile(peer, 0.5);
    std::printf(
        "%-6s 20 MB stored and renamed: %6.1f ms, %5.0f MB/s; curl, with its start and log-in: %6.1f ms; "
        "ratio %.2f\n",
        name, ours, MegabytesPerSecond(ours), theirs, theirs / ours);
    run.ticks.Print(name);
}

}  // namespace
}  // namespace tessaloom

int main(int argc, char** argv) {
    using namespace tessaloom;
    QCoreApplication application(argc, argv);
    const tessaloom::testing::TemporaryFolder folder;
    if (chdir(folder.Path().c_str()) != 0) return 1;
    const QtSystemTime time;
    modTime::UseSystemTime(time);
    {
        TickWatch ticks;
        QtTimer timer;
        timer.Start(TickMilliseconds, [&] {
            ticks.Tick();
            if (ticks.Ticks() == Effort<std::size_t>(1000, 10)) QCoreApplication::quit();
        });
        application.exec();
        ticks.Print("idle");
    }
    Measure(application, tessaloom::testing::FtpServer::Kind::Vsftpd, "plain", "");
    Measure(application, tessaloom::testing::FtpServer::Kind::VsftpdTls, "TLS", "--ssl-reqd --tls-max 1.2");
    modTime::ReleaseSystemTime(time);
}
