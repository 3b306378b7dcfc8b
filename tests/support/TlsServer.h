#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <csignal>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>

#include "support/TemporaryFolder.h"

namespace tessaloom::testing {

/// A web server on 127.0.0.1 that speaks TLS, with a certificate of its own making, and one file to fetch:
/// the openssl program, run as a child.
class TlsServer {
public:
    TlsServer(const std::string& name, std::string_view contents) {
        std::ofstream(folder_ / name) << contents;
        const std::string make = "cd '" + folder_.Path() +
                                 "' && openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes "
                                 "-keyout key.pem -out cert.pem -days 2 -subj /CN=127.0.0.1 "
                                 "-addext subjectAltName=IP:127.0.0.1 >/dev/null 2>&1";
        if (std::system(make.c_str()) == 0) Start();
    }
    ~TlsServer() {
        if (output_) std::fclose(output_);
        if (process_ <= 0) return;
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }
    TlsServer(const TlsServer&) = delete;
    TlsServer& operator=(const TlsServer&) = delete;

    bool Runs() const { return !port_.empty(); }
    std::string Address(std::string_view path) const { return ("https://127.0.0.1:" + port_).append(path); }
    std::string CertificateFile() const { return folder_ / "cert.pem"; }

private:
    void Start() {
        int pipeEnds[2];
        if (::pipe(pipeEnds) != 0) return;
        process_ = ::fork();
        if (process_ == 0) {
            ::dup2(pipeEnds[1], STDOUT_FILENO);
            ::dup2(::open("/dev/null", O_RDWR), STDERR_FILENO);
            ::close(pipeEnds[0]);
            ::close(pipeEnds[1]);
            if (::chdir(folder_.Path().c_str()) == 0)
                ::execlp("openssl", "openssl", "s_server", "-accept", "127.0.0.1:0", "-cert", "cert.pem",
                         "-key", "key.pem", "-WWW", nullptr);
            ::_exit(127);
        }
        ::close(pipeEnds[1]);
        output_ = ::fdopen(pipeEnds[0], "r");
        // The line "ACCEPT 127.0.0.1:PORT" tells where it listens.
        char line[256];
        while (port_.empty() && std::fgets(line, sizeof line, output_)) {
            const std::string_view text(line);
            const std::size_t colon = text.rfind(':');
            if (text.starts_with("ACCEPT") && colon != std::string_view::npos)
                port_ = text.substr(colon + 1, text.find_last_of("0123456789") - colon);
        }
    }

    TemporaryFolder folder_;
    pid_t process_ = 0;
    std::FILE* output_ = nullptr;
    std::string port_;
};

}  // namespace tessaloom::testing
