#include "platform/posix/PosixConnection.h"

#include <arpa/inet.h>
#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/uio.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

namespace tessaloom {

namespace {

constexpr std::size_t ReadAtOnce = 4096;

/// Larger messages go in several turns: a client as fast as we are would keep all others, and the ticks,
/// waiting.
constexpr std::size_t SentAtOnce = std::size_t{512} << 10;

/// What a client may send that nobody hears before it has to wait: more than its programs send along by
/// habit, and a few hundredths of a second of our time.
constexpr std::size_t DroppedAtMost = std::size_t{16} << 20;

std::string PeerAddress(int socket) {
    sockaddr_storage peer{};
    socklen_t size = sizeof peer;
    if (::getpeername(socket, reinterpret_cast<sockaddr*>(&peer), &size) != 0) return {};
    std::array<char, INET6_ADDRSTRLEN> text{};
    const void* address = &reinterpret_cast<const sockaddr_in*>(&peer)->sin_addr;
    int family = peer.ss_family;
    if (family == AF_INET6) {
        const in6_addr& six = reinterpret_cast<const sockaddr_in6*>(&peer)->sin6_addr;
        address = &six;
        if (IN6_IS_ADDR_V4MAPPED(&six)) {
            address = six.s6_addr + 12;
            family = AF_INET;
        }
    }
    const char* const written = ::inet_ntop(family, address, text.data(), text.size());
    return written ? written : "";
}

/// The other side, or the way to it, is gone: nothing that anybody here could have done better.
bool IsFarewell(int error) {
    constexpr std::array Farewells{ECONNRESET, EPIPE, ETIMEDOUT, EHOSTUNREACH, ENETUNREACH, ECONNABORTED};
    return std::ranges::find(Farewells, error) != Farewells.end();
}

bool IsForLater(int error) { return error == EAGAIN || error == EWOULDBLOCK || error == EINTR; }

iovec Part(const std::string& bytes, std::size_t from, std::size_t end) {
    return {const_cast<char*>(bytes.data()) + from, end - from};
}

}  // namespace

bool PosixConnection::Accept(int requestID) {
    Close();
    Descriptor& offered = sockets_.Offered();
    if (!offered || offered.Number() != requestID) return false;
    token_ = sockets_.Poll().Add(requestID, EPOLLIN, *this);
    if (token_ == 0) return false;
    watched_ = EPOLLIN;
    socket_ = std::exchange(offered, Descriptor());
    const int yes = 1;
    ::setsockopt(socket_.Number(), IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
    remoteHostIP_ = PeerAddress(socket_.Number());
    bytesSent_ = 0;
    dropped_ = 0;
    failure_ = 0;
    input_ = Input::Heard;
    closing_ = draining_ = false;
    return true;
}

void PosixConnection::Close() {
    if (token_ != 0) sockets_.Poll().Remove(token_, socket_.Number());
    token_ = 0;
    socket_ = Descriptor();
    head_.clear();
    body_.reset();
    sent_ = 0;
}

bool PosixConnection::Send(std::string head, SharedBytes body) {
    if (!socket_) return true;
    head_ = std::move(head);
    body_ = std::move(body);
    sent_ = 0;
    if (Flush()) return true;
    Watch(true);
    return false;
}

void PosixConnection::NotifySent() { Watch(true); }

void PosixConnection::IgnoreInput() {
    if (input_ != Input::Heard) return;
    input_ = Input::Ignored;
    Watch((watched_ & EPOLLOUT) != 0);
}

void PosixConnection::CloseWhenSent() {
    closing_ = true;
    IgnoreInput();
    if (socket_ && head_.empty() && !body_) BeginDraining();
}

/// Closing with unread bytes would make the system throw away what is still on its way to the other side.
void PosixConnection::BeginDraining() {
    ::shutdown(socket_.Number(), SHUT_WR);
    draining_ = true;
    Watch(false);
}

std::uint64_t PosixConnection::BytesArrived() const {
    int onTheWay = 0;
    if (socket_) ::ioctl(socket_.Number(), SIOCOUTQ, &onTheWay);
    if (draining_ && onTheWay > 0) --onTheWay;  // the end of what we send counts as a byte
    return bytesSent_ - static_cast<std::uint64_t>(onTheWay);
}

void PosixConnection::Ready(std::uint32_t) {
    if (input_ != Input::Heard && !Drop()) return;
    if (watched_ & EPOLLOUT) return GoOn();
    if (input_ == Input::Heard) Receive();
}

// In what follows nothing of this object may be touched behind a call of the events' receiver, who may have
// closed it, or used it anew.

void PosixConnection::Receive() {
    std::array<char, ReadAtOnce> buffer;
    const ssize_t got = ::recv(socket_.Number(), buffer.data(), buffer.size(), 0);
    if (got < 0) return IsForLater(errno) ? void() : Fail(errno);
    if (got == 0) return Fail(ECONNRESET);
    events_.Socket_DataArrival({buffer.data(), static_cast<std::size_t>(got)});
}

/// False when that has ended the connection. Where nothing is watched for, any event means its end.
bool PosixConnection::Drop() {
    const auto failed = [this](int error) {
        Fail(error);
        return false;
    };
    if (input_ == Input::Over) return watched_ != 0 || failed(ECONNRESET);
    std::array<char, ReadAtOnce> buffer;
    const ssize_t got = ::recv(socket_.Number(), buffer.data(), buffer.size(), 0);
    if (got < 0) return IsForLater(errno) || failed(errno);
    if (got == 0 && draining_) return failed(ECONNRESET);
    dropped_ += static_cast<std::size_t>(got);
    if (got == 0 || dropped_ > DroppedAtMost) {
        input_ = Input::Over;
        Watch((watched_ & EPOLLOUT) != 0);
    }
    return true;
}

void PosixConnection::GoOn() {
    if (!Flush()) return failure_ != 0 ? Fail(failure_) : void();
    if (closing_) return BeginDraining();
    Watch(false);
    events_.Socket_SendComplete();
}

/// True when everything has gone. A failure is left for the next event, which it brings about.
bool PosixConnection::Flush() {
    if (failure_ != 0) return false;
    const std::size_t all = head_.size() + (body_ ? body_->size() : 0);
    const std::size_t end = std::min(all, sent_ + SentAtOnce);
    while (sent_ < end) {
        const ssize_t gone = SendUpTo(end);
        if (gone < 0) {
            if (!IsForLater(errno)) failure_ = errno;
            return false;
        }
        sent_ += static_cast<std::size_t>(gone);
        bytesSent_ += static_cast<std::uint64_t>(gone);
    }
    if (end < all) return false;
    head_.clear();
    body_.reset();
    sent_ = 0;
    return true;
}

/// Sends from where we are, once. `end` counts bytes of head and body together, as `sent_` does.
ssize_t PosixConnection::SendUpTo(std::size_t end) {
    std::array<iovec, 2> parts;
    std::size_t count = 0;
    if (sent_ < head_.size()) parts[count++] = Part(head_, sent_, std::min(end, head_.size()));
    if (end > head_.size())
        parts[count++] = Part(*body_, std::max(sent_, head_.size()) - head_.size(), end - head_.size());
    msghdr message{};
    message.msg_iov = parts.data();
    message.msg_iovlen = count;
    return ::sendmsg(socket_.Number(), &message, MSG_NOSIGNAL);
}

void PosixConnection::Fail(int error) {
    Close();
    if (IsFarewell(error))
        events_.Socket_Close();
    else
        events_.Socket_Error(std::generic_category().message(error));
}

/// Waits for room when something is to be sent. Input is waited for besides when it is ignored, else only
/// when nothing is to be sent.
void PosixConnection::Watch(bool sending) {
    const bool reading = input_ == Input::Ignored || (input_ == Input::Heard && !sending);
    const std::uint32_t events = (sending ? EPOLLOUT : 0U) | (reading ? EPOLLIN : 0U);
    if (token_ == 0 || std::exchange(watched_, events) == events) return;
    sockets_.Poll().Change(token_, socket_.Number(), events);
}

}  // namespace tessaloom
