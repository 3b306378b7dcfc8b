#pragma once

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>

#include <csignal>

#include "support/LocalPort.h"

namespace tessaloom::testing {

/// A program of the system that runs silently beside a test, and is killed with this object.
class ServerProgram {
public:
    explicit ServerProgram(std::vector<std::string> words) {
        std::vector<char*> arguments;
        for (std::string& word : words) arguments.push_back(word.data());
        arguments.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        for (const int handle : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            posix_spawn_file_actions_addopen(&actions, handle, "/dev/null", O_RDWR, 0);
        const int failed =
            posix_spawnp(&process_, arguments[0], &actions, nullptr, arguments.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        if (failed) throw std::runtime_error("cannot run " + words[0]);
    }
    ~ServerProgram() {
        if (process_ > 0) ::kill(process_, SIGKILL);
        Wait();
    }
    ServerProgram(const ServerProgram&) = delete;
    ServerProgram& operator=(const ServerProgram&) = delete;

    /// Its exit status, once it has ended by itself; 0 is success.
    int Wait() {
        if (process_ > 0) ::waitpid(process_, &status_, 0);
        process_ = 0;
        return status_;
    }

    /// Whether it has ended by itself.
    bool Ended() {
        if (process_ > 0 && ::waitpid(process_, &status_, WNOHANG) == process_) process_ = 0;
        return process_ <= 0;
    }

    /// Runs a command of the shell in a folder.
    static std::unique_ptr<ServerProgram> InFolder(const std::string& folder, const std::string& command) {
        return std::make_unique<ServerProgram>(
            std::vector<std::string>{"/bin/sh", "-c", "cd '" + folder + "' && exec " + command});
    }

    /// Puts "key.pem" and "cert.pem" into a folder. False when the openssl program does not.
    static bool MakeCertificate(const std::string& folder) {
        return InFolder(folder,
                        "openssl req -x509 -newkey rsa:2048 -nodes -keyout key.pem -out cert.pem -days 2 "
                        "-subj /CN=127.0.0.1 -addext subjectAltName=IP:127.0.0.1")
                   ->Wait() == 0;
    }

    /// Whether it takes connections on a port of 127.0.0.1, within 20 s.
    bool Listens(const std::string& port) {
        for (int attempt = 0; attempt < 2000; ++attempt) {
            const int handle = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
            const bool connected = Connects(handle, std::stoi(port));
            ::close(handle);
            if (connected) return true;
            if (Ended()) return false;
            ::poll(nullptr, 0, 10);
        }
        return false;
    }

    /// A port of 127.0.0.1 that nobody uses just now.
    static std::string FreePort(int type = SOCK_STREAM) {
        return std::to_string(tessaloom::testing::FreePort(type));
    }

private:
    pid_t process_ = 0;
    int status_ = 0;
};

}  // namespace tessaloom::testing
