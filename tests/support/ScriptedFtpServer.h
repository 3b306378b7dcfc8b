#pragma once

#include <netinet/tcp.h>
#include <poll.h>

#include <mutex>
#include <thread>

#include "support/LocalPort.h"

namespace tessaloom::testing {

/// A server of a test's own on 127.0.0.1 that keeps what it is sent, and misbehaves where a test wants it to.
class ScriptedFtpServer {
public:
    enum class Fault { None, Mute, Garbage, ManyLines, TwoReplies, Close, ReplyAndClose, Refuse, Endless };

    ScriptedFtpServer() : listener_(OpenLocally(port_)), thread_([this] { Accept(); }) {}
    ~ScriptedFtpServer() {
        ::shutdown(listener_, SHUT_RDWR);
        thread_.join();
        Locked([&] {
            for (const int handle : handles_) ::shutdown(handle, SHUT_RDWR);
        });
        for (std::thread& thread : threads_) thread.join();
        ::close(listener_);
    }
    ScriptedFtpServer(const ScriptedFtpServer&) = delete;
    ScriptedFtpServer& operator=(const ScriptedFtpServer&) = delete;

    std::string Place() const { return "127.0.0.1:" + std::to_string(port_); }

    /// The next `times` that `command` comes ("" for the greeting, "226" for the end of a file), this
    /// happens.
    void Misbehave(std::string command, Fault fault, int times = 1) {
        Locked([&] { command_ = std::move(command), fault_ = fault, times_ = times; });
    }
    /// How many of those times are still to come.
    int FaultsLeft() {
        return Locked([&] { return times_; });
    }
    std::string File(const std::string& path) {
        return Locked([&] { return files_[path]; });
    }

private:
    template <typename Work>
    std::invoke_result_t<Work> Locked(Work work) {
        const std::lock_guard lock(mutex_);
        return work();
    }

    void Accept() {
        for (int handle; (handle = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC)) >= 0;) {
            const int atOnce = 1;
            ::setsockopt(handle, IPPROTO_TCP, TCP_NODELAY, &atOnce, sizeof atOnce);
            Locked([&] {
                handles_.insert(handle);
                threads_.emplace_back([this, handle] { Converse(handle); });
            });
        }
    }

    static bool Send(int handle, std::string_view text) {
        ssize_t sent = 1;
        for (; sent > 0 && !text.empty(); text.remove_prefix(static_cast<std::size_t>(sent < 0 ? 0 : sent)))
            sent = ::send(handle, text.data(), text.size(), MSG_NOSIGNAL);
        return sent > 0;
    }

    /// False ends the connection.
    bool Reply(int handle, const std::string& command, const std::string& reply) {
        const Fault fault = Locked([&] {
            const bool now = command == command_ && times_ > 0;
            return now ? --times_, fault_ : Fault::None;
        });
        const std::string line = reply + "\r\n";
        char byte;
        switch (fault) {
            case Fault::None:
                return Send(handle, line);
            case Fault::Mute:
                while (::recv(handle, &byte, 1, 0) > 0) {}
                return false;
            case Fault::Garbage:
                return Send(handle, std::string("\0\xFF\x1B[2J%n%s\r\n999999\r\nno\r\n", 24)) &&
                       Send(handle, line);
            case Fault::ManyLines:
                return Send(handle, reply.substr(0, 3) + "-first\r\n 550 second\r\nthird\r\n" + line);
            case Fault::TwoReplies:
                return Send(handle, line + "250 And this\r\n");
            case Fault::Close:
                return false;
            case Fault::ReplyAndClose:
                return Send(handle, line) && false;
            case Fault::Refuse:
                return Send(handle, "552 No room for hush\r\n");
            case Fault::Endless:
                while (Send(handle, "200-" + std::string(1000, 'x') + "\r\n")) {}
                return false;
        }
        return false;
    }

    void Converse(int handle) {
        int data = -1;
        std::string from, line;
        bool going = Reply(handle, "", "220 Welcome");
        for (char c; going && ::recv(handle, &c, 1, 0) == 1;) {
            if (c != '\r' && c != '\n') line += c;
            if (c != '\n') continue;
            const std::string command = line.substr(0, line.find(' '));
            const std::string rest = line.size() > command.size() ? line.substr(command.size() + 1) : "";
            line.clear();
            going = command == "STOR"
                        ? Store(handle, rest, data)
                        : Reply(handle, command, Obey(command, rest, data, from)) && command != "QUIT";
        }
        ::close(data);
        Locked([&] { handles_.erase(handle); });
        ::close(handle);
    }

    std::string Obey(const std::string& command, const std::string& rest, int& data, std::string& from) {
        static const std::map<std::string, std::string> replies{
            {"USER", "331 Word" },
            {"PASS", "230 In"   },
            {"PWD",  "257 \"/\""},
            {"TYPE", "200 Ok"   },
            {"NOOP", "200 Ok"   },
            {"QUIT", "221 Bye"  }
        };
        if (const auto plain = replies.find(command); plain != replies.end()) return plain->second;
        if (command == "EPSV") {
            int port = 0;
            ::close(std::exchange(data, OpenLocally(port)));
            return "229 Go (|||" + std::to_string(port) + "|)";
        }
        if (command == "DELE") return Locked([&] { return files_.erase(rest); }) ? "250 Gone" : "550 None";
        if (command == "RNFR") return from = rest, "350 To?";
        if (command == "RNTO")
            return Locked([&] { files_[rest] = std::exchange(files_[from], {}); }), "250 Ok";
        return "502 What is " + command;
    }

    bool Store(int handle, const std::string& path, int data) {
        if (!Reply(handle, "STOR", "150 Go on")) return false;
        // A client that was refused does not connect.
        pollfd either[] = {
            {data,   POLLIN,             0},
            {handle, POLLIN | POLLRDHUP, 0}
        };
        ::poll(either, 2, -1);
        if (!(either[0].revents & POLLIN)) return true;
        const int connection = ::accept4(data, nullptr, nullptr, SOCK_CLOEXEC);
        std::string bytes(65536, '\0'), whole;
        for (ssize_t got; (got = ::recv(connection, bytes.data(), bytes.size(), 0)) > 0;)
            whole.append(bytes, 0, static_cast<std::size_t>(got));
        ::close(connection);
        Locked([&] { files_[path] = whole; });
        return Reply(handle, "226", "226 Stored");
    }

    std::mutex mutex_;  ///< For what follows.
    std::map<std::string, std::string> files_;
    std::string command_;
    Fault fault_ = Fault::None;
    int times_ = 0;
    std::set<int> handles_;
    std::vector<std::thread> threads_;

    int port_ = 0;
    int listener_;
    std::thread thread_;
};

}  // namespace tessaloom::testing
