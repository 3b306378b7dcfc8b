#pragma once

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>
#include <string>
#include <vector>

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

    /// A port of 127.0.0.1 that nobody uses just now.
    static std::string FreePort(int type = SOCK_STREAM) {
        const int handle = ::socket(AF_INET, type | SOCK_CLOEXEC, 0);
        sockaddr_in place{};
        place.sin_family = AF_INET;
        place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof place;
        ::bind(handle, reinterpret_cast<sockaddr*>(&place), size);
        ::getsockname(handle, reinterpret_cast<sockaddr*>(&place), &size);
        ::close(handle);
        return std::to_string(ntohs(place.sin_port));
    }

private:
    pid_t process_ = 0;
    int status_ = 0;
};

}  // namespace tessaloom::testing
