#pragma once

#include <poll.h>

#include <atomic>
#include <mutex>
#include <thread>

#include "support/LocalPort.h"

namespace tessaloom::testing {

/// A web server of a test's own on 127.0.0.1, as hostile as the test wants it: each path has a routine that
/// may send anything. Every connection has a thread and one request; all end with this object.
class LocalHttpServer {
public:
    /// A connection whose request has been read.
    class Connection {
    public:
        Connection(int handle, std::string request) : handle_(handle), request_(std::move(request)) {}

        /// Its head and its body.
        const std::string& Request() const { return request_; }

        /// The head of the next request; cut short when the other side goes.
        std::string NextHead() {
            std::string head;
            char byte = 0;
            while (!head.ends_with("\r\n\r\n") && ::recv(handle_, &byte, 1, 0) == 1) head += byte;
            return head;
        }

        /// False when the other side is gone.
        bool Send(std::string_view bytes) {
            while (!bytes.empty()) {
                const ssize_t sent = ::send(handle_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
                if (sent <= 0) return false;
                bytes.remove_prefix(static_cast<std::size_t>(sent));
            }
            return true;
        }

        /// Holds the line, for so many milliseconds or (-1) until the other side goes. True when it has gone.
        bool GoneWithin(int milliseconds) {
            pollfd other{handle_, POLLIN | POLLRDHUP, 0};
            return ::poll(&other, 1, milliseconds) != 0;
        }

    private:
        int handle_;
        std::string request_;
    };

    using Answer = std::function<void(Connection&)>;

    LocalHttpServer() : listener_(OpenLocally(port_)), thread_([this] { Accept(); }) {}
    ~LocalHttpServer() {
        ::shutdown(listener_, SHUT_RDWR);
        thread_.join();
        {
            const std::lock_guard lock(mutex_);
            for (const int handle : handles_) ::shutdown(handle, SHUT_RDWR);
        }
        for (std::thread& thread : connections_) thread.join();
        for (const int handle : handles_) ::close(handle);
        ::close(listener_);
    }
    LocalHttpServer(const LocalHttpServer&) = delete;
    LocalHttpServer& operator=(const LocalHttpServer&) = delete;

    /// path: with its leading "/", without a query. Other paths answer with status 404 and a page.
    void On(std::string path, Answer answer) {
        const std::lock_guard lock(mutex_);
        answers_[std::move(path)] = std::move(answer);
    }

    /// The ordinary answer.
    void Serve(std::string path, std::string body) {
        On(std::move(path), [body = std::move(body)](Connection& to) { to.Send(Whole("200 OK", body)); });
    }

    static std::string Whole(std::string_view status, std::string_view body, std::string_view headers = "") {
        return std::string("HTTP/1.1 ")
            .append(status)
            .append("\r\nContent-Length: ")
            .append(std::to_string(body.size()))
            .append("\r\nConnection: close\r\n")
            .append(headers)
            .append("\r\n")
            .append(body);
    }

    std::string Address(std::string_view path) const {
        return std::string("http://127.0.0.1:").append(std::to_string(port_)).append(path);
    }
    int Port() const { return port_; }
    int Requests() const { return requests_; }

private:
    void Accept() {
        for (;;) {
            const int handle = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
            if (handle < 0) return;
            const std::lock_guard lock(mutex_);
            handles_.push_back(handle);
            connections_.emplace_back([this, handle] { Converse(handle); });
        }
    }

    void Converse(int handle) {
        std::string request = Connection(handle, "").NextHead();
        char byte = 0;
        for (std::size_t left = BodyBytes(request); left > 0 && ::recv(handle, &byte, 1, 0) == 1; --left)
            request += byte;
        const std::size_t from = request.find(' ');
        if (from != std::string::npos) {
            ++requests_;
            const std::string path =
                request.substr(from + 1, request.find_first_of(" ?", from + 1) - from - 1);
            Connection connection(handle, request);
            AnswerOf(path)(connection);
        }
        ::shutdown(handle, SHUT_RDWR);
    }

    static std::size_t BodyBytes(const std::string& head) {
        constexpr std::string_view Name = "\r\nContent-Length: ";
        const std::size_t at = head.find(Name);
        return at == head.npos ? 0 : std::stoul(head.substr(at + Name.size()));
    }

    Answer AnswerOf(const std::string& path) {
        const std::lock_guard lock(mutex_);
        const auto found = answers_.find(path);
        if (found != answers_.end()) return found->second;
        return [](Connection& to) { to.Send(Whole("404 Not Found", "<html>There is no such page</html>")); };
    }

    std::atomic<int> requests_ = 0;
    std::mutex mutex_;  ///< For what follows.
    std::map<std::string, Answer> answers_;
    std::vector<int> handles_;
    std::vector<std::thread> connections_;

    int port_ = 0;
    int listener_;
    std::thread thread_;
};

}  // namespace tessaloom::testing
