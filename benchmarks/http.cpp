// The web server beside nginx with one worker, and what its clients cost the tick.
//
// bench-http [SECONDS], 5 without it, for each measurement. Both servers send the same picture of some 100 KB
// to wrk over 16 connections that are kept, in turns, while a canvas is composed ten times a second. Then 100
// connections, half of which hardly read, while the ticks are timed.

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "benchmarks/Effort.h"
#include "imaging/Graphic.h"
#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "platform/jpeg/TurboJpegCodec.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/posix/PosixSockets.h"
#include "platform/qt/QtPictureLoader.h"
#include "platform/qt/QtSystemTime.h"
#include "platform/text/FreeTypeFonts.h"
#include "publish/VideoStreaming.h"
#include "publish/WebServer.h"
#include "support/TemporaryFolder.h"
#include "support/TestPlatform.h"
#include "support/WebClient.h"
#include "text/Text.h"
#include "time/modTime.h"

namespace tessaloom {
using Steady = std::chrono::steady_clock;

namespace {

constexpr std::chrono::milliseconds Tick{10};

void Demand(bool holds, const std::string& what) {
    if (holds) return;
    std::fprintf(stderr, "wrong: %s\n", what.c_str());
    std::exit(1);
}

/// The engine on its real parts in the real event loop.
class Server {
public:
    explicit Server(const std::string& folder) {
        modTime::UseSystemTime(clock_);
        portfolio_.SetCaptureTime(modTime::Clock());
        Canvas& published = Open(1, 1280, 720);
        CanvasWebServer& page = published.VideoStreaming().CanvasWebServer();
        page.SetFileName("picture.jpg");
        page.SetInterval(60);
        page.SetQuality(94);
        page.SetEnabled(true);
        Text& text = *Open(2, 640, 360).AddText(1);
        text.SetValue("<TIMEHH>:<TIMEMM>:<TIMESS>");
        text.SetRate(0.1);
        WebServer& server = portfolio_.WebServer();
        server.SetPort(port);
        server.SetWebPath(folder);
        server.SetEnabled(true);
        Demand(server.Enabled(), "the server does not listen");
        QObject::connect(&notifier_, &QSocketNotifier::activated, [this] { sockets_.Dispatch(); });
        QObject::connect(&timer_, &QTimer::timeout, [this] { OnTick(); });
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.start(Tick);
        OnTick();
    }

    /// Lets the event loop run until `done`, and returns by how many milliseconds each tick was late.
    std::vector<double> Run(const std::function<bool()>& done) {
        late_.clear();
        lastTick_ = Steady::now();
        QEventLoop loop;  // entered for long, as the program does; short calls favour sockets over timers
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, [&] {
            if (done()) loop.quit();
        });
        look.start(20);
        loop.exec();
        return std::move(late_);
    }

    SharedBytes Picture() { return portfolio_.Canvas(1).VideoStreaming().CanvasWebServer().JPEGData(); }

    const int port = testing::FreePort();

private:
    Canvas& Open(int slot, int width, int height) {
        Canvas& canvas = portfolio_.Canvas(slot);
        canvas.SetWidthHeight(width, height);
        Graphic& photo = *canvas.AddGraphic(1);
        photo.SetSourceType(Graphic::PictureFile);
        photo.SetSourceFileName(DEMO_FOLDER "\\pictures\\harbour.jpg");
        photo.SetRate(0);
        canvas.SetEnabled(true);
        return canvas;
    }

    /// A tick is late by what passed beyond ten milliseconds since the one before began; the timer does not
    /// make up for it.
    void OnTick() {
        const auto now = Steady::now();
        late_.push_back(std::chrono::duration<double, std::milli>(now - lastTick_ - Tick).count());
        lastTick_ = now;
        portfolio_.SetCaptureTime(modTime::Clock());
        portfolio_.UpdateOtherPre();
        portfolio_.UpdateImages();
        portfolio_.UpdateOtherPost();
    }

    testing::TestPlatform fakes_;
    PosixFileSystem files_;
    ProfileFiles profiles_{files_};
    QtSystemTime clock_;
    FreeTypeFonts fonts_;
    QtPictureLoader loader_;
    TurboJpegCodec codec_;
    PosixSockets sockets_;
    Platform platform_{files_,         profiles_,         fakes_.locale, clock_,
                       fonts_,         loader_,           codec_,        fakes_.dialogs,
                       fakes_.desktop, fakes_.mainWindow, fakes_.timer,  fakes_.urlTransfers,
                       sockets_};
    Portfolio portfolio_{platform_};
    QSocketNotifier notifier_{sockets_.Number(), QSocketNotifier::Read};
    QTimer timer_;
    std::vector<double> late_;
    Steady::time_point lastTick_ = Steady::now();
};

/// A program beside this one, whose output is read when it has ended.
class Child {
public:
    explicit Child(const std::string& command) : output_(::popen(command.c_str(), "r")) {
        Demand(output_ != nullptr, command);
        ::fcntl(::fileno(output_), F_SETFL, O_NONBLOCK);
    }
    ~Child() { ::pclose(output_); }

    bool Ended() {
        char bytes[4096];
        for (;;) {
            const ssize_t got = ::read(::fileno(output_), bytes, sizeof bytes);
            if (got <= 0) return got == 0;
            text_.append(bytes, static_cast<std::size_t>(got));
        }
    }

    double Figure(const std::string& name) const {
        const std::size_t at = text_.find(name);
        Demand(at != text_.npos, "no " + name + " in: " + text_);
        return std::strtod(text_.c_str() + at + name.size(), nullptr);
    }

private:
    std::FILE* output_;
    std::string text_;
};

std::string Wrk(int connections, int seconds, int port) {
    return "exec wrk -t1 -c" + std::to_string(connections) + " -d" + std::to_string(seconds) +
           " -H 'Connection: keep-alive' http://127.0.0.1:" + std::to_string(port) + "/picture.jpg";
}

class Nginx {
public:
    explicit Nginx(const std::string& folder) : settings_(folder + "/nginx.conf") {
        std::string folders;  // anybody may run it with folders of his own
        for (const char* kind : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"})
            folders += std::string(kind) + "_temp_path " + folder + "/" + kind + ";\n";
        std::ofstream(settings_)
            << "worker_processes 1; pid " << folder << "/nginx.pid; error_log /dev/null;\n"
            << "events { worker_connections 512; }\n"
            << "http { access_log off; sendfile on; tcp_nopush on; keepalive_requests 1000000000;\n"
            << folders << "server { listen 127.0.0.1:" << port << "; root " << folder << "; } }\n";
        Demand(std::system(("nginx -c " + settings_).c_str()) == 0, "nginx does not start");
    }
    ~Nginx() {
        if (std::system(("nginx -s stop -c " + settings_ + " 2>/dev/null").c_str()) != 0)
            std::puts("nginx stays");
    }

    const int port = testing::FreePort();

private:
    std::string settings_;
};

/// Clients that take some bytes every now and then, on a thread of their own.
class SlowReaders {
public:
    SlowReaders(int count, int port) : thread_([this, count, port] { Read(count, port); }) {}
    ~SlowReaders() {
        stop_ = true;
        thread_.join();
    }

private:
    void Read(int count, int port) {
        std::vector<int> handles;
        for (int i = 0; i < count; ++i) {
            const int handle = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), buffer = 4096;
            ::setsockopt(handle, SOL_SOCKET, SO_RCVBUF, &buffer, sizeof buffer);
            const sockaddr_in place = testing::LocalPlace(port);
            Demand(::connect(handle, reinterpret_cast<const sockaddr*>(&place), sizeof place) == 0,
                   "no connection");
            handles.push_back(handle);
        }
        const std::string request = "GET /picture.jpg HTTP/1.1\r\nConnection: keep-alive\r\n\r\n";
        std::vector<char> bytes(2048);
        while (!stop_) {
            for (const int handle : handles) {
                if (::recv(handle, bytes.data(), bytes.size(), MSG_DONTWAIT) <= 0)
                    (void)!::send(handle, request.data(), request.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        for (const int handle : handles) ::close(handle);
    }

    std::atomic<bool> stop_ = false;
    std::thread thread_;
};

double Median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

double Share(std::vector<double> values, double share) {
    std::ranges::sort(values);
    return values[static_cast<std::size_t>(static_cast<double>(values.size() - 1) * share)];
}

}  // namespace
}  // namespace tessaloom

int main(int count, char** arguments) {
    using namespace tessaloom;
    const int seconds = count > 1 ? std::max(1, std::atoi(arguments[1])) : Effort(5, 1);
    QCoreApplication application(count, arguments);
    const tessaloom::testing::TemporaryFolder folder(tessaloom::testing::TemporaryFolder::InMemory());
    ::chmod(folder.Path().c_str(), 0755);  // nginx reads as somebody else
    Server server(folder.Path());
    const SharedBytes picture = server.Picture();
    std::ofstream(folder / "picture.jpg", std::ios::binary) << *picture;
    std::printf("picture: %zu bytes\n", picture->size());
    {
        const Nginx nginx(folder.Path());
        std::vector<double> own, peer;
        for (int round = 0; round < Effort(3, 1); ++round) {
            for (const auto& [port, rates] : {std::pair(server.port, &own), std::pair(nginx.port, &peer)}) {
                Child wrk(Wrk(16, seconds, port));
                server.Run([&] { return wrk.Ended(); });
                rates->push_back(wrk.Figure("Requests/sec:"));
            }
        }
        std::printf("16 connections: %.0f requests/s, nginx %.0f: %.2f of it\n", Median(own), Median(peer),
                    Median(own) / Median(peer));
    }
    {
        const SlowReaders slow(50, server.port);
        Child wrk(Wrk(50, 3 * seconds, server.port));
        const auto late = server.Run([&] { return wrk.Ended(); });
        std::printf(
            "100 connections, half of them slow: %.0f requests/s, ticks late by %.2f ms (99.9 %%), %.2f ms "
            "at most, of %zu\n",
            wrk.Figure("Requests/sec:"), Share(late, 0.999), *std::ranges::max_element(late), late.size());
    }
    return 0;
}
