#pragma once

#include <poll.h>

#include <cerrno>
#include <charconv>

#include "support/LocalPort.h"

namespace tessaloom::testing {

/// A client of a web server on this computer. While it waits, `meanwhile` runs again and again.
class WebClient {
public:
    explicit WebClient(
        int port, std::function<void()> meanwhile = [] {})
        : meanwhile_(std::move(meanwhile)), handle_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        connected_ = Connects(handle_, port);
    }
    ~WebClient() { Leave(); }
    WebClient(const WebClient&) = delete;
    WebClient& operator=(const WebClient&) = delete;

    bool Connected() const { return connected_; }

    /// The server threw the connection away, and with it what was still on its way, instead of closing it.
    bool BrokenOff() const { return brokenOff_; }

    /// False when the server has closed.
    bool Send(std::string_view bytes) {
        for (int patience = Patience; !bytes.empty() && patience > 0; --patience) {
            const ssize_t gone = ::send(handle_, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
            if (gone < 0 && errno != EAGAIN) return !(brokenOff_ = true);
            bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(gone, 0)));
            meanwhile_();
            if (gone < 0) Wait(POLLOUT);
        }
        return bytes.empty();
    }

    /// The next response, head and body; what came of it when the server closes before its end.
    std::string Response() {
        const auto whole = [this] {
            const std::size_t end = received_.find("\r\n\r\n"), length = received_.find("Content-Length: ");
            std::size_t body = 0;
            if (length < end) std::from_chars(&received_[length + 16], &received_[end], body);
            return end == received_.npos ? end : end + 4 + body;
        };
        while (received_.size() < whole() && Receive()) {}
        const std::size_t size = std::min(whole(), received_.size());
        return std::exchange(received_, received_.substr(size)).substr(0, size);
    }

    /// Everything until the server closes.
    std::string Rest() {
        while (Receive()) {}
        return std::exchange(received_, {});
    }

    std::string Get(std::string_view path) {
        Send(std::string("GET ").append(path).append(" HTTP/1.1\r\nConnection: keep-alive\r\n\r\n"));
        return Response();
    }

    void Leave() {
        if (handle_ >= 0) ::close(std::exchange(handle_, -1));
    }

private:
    static constexpr int Patience = 20'000;  ///< Waits of a millisecond.

    bool Receive() {
        std::array<char, 65536> buffer;
        for (int patience = Patience; patience > 0; --patience) {
            meanwhile_();
            const ssize_t got = ::recv(handle_, buffer.data(), buffer.size(), MSG_DONTWAIT);
            if (got > 0) received_.append(buffer.data(), static_cast<std::size_t>(got));
            if (got >= 0) return got > 0;
            if (errno != EAGAIN) return !(brokenOff_ = true);
            Wait(POLLIN);
        }
        return false;
    }
    void Wait(short event) const {
        pollfd wait{handle_, event, 0};
        ::poll(&wait, 1, 1);
    }

    std::function<void()> meanwhile_;
    std::string received_;
    int handle_;
    bool connected_ = false;
    bool brokenOff_ = false;
};

}  // namespace tessaloom::testing
