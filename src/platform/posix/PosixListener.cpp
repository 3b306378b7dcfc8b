#include "platform/posix/PosixListener.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/epoll.h>
#include <sys/socket.h>

#include <cerrno>
#include <system_error>

namespace tessaloom {

namespace {

/// Connections taken in one go, so that a flood of them leaves time for those that are there.
constexpr int AcceptedAtOnce = 16;

template <typename Address>
bool Bind(int socket, const Address& address) {
    return ::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
           ::listen(socket, SOMAXCONN) == 0;
}

Descriptor NewSocket(int family) {
    Descriptor made(::socket(family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    const int yes = 1, no = 0;
    if (!made) return made;
    ::setsockopt(made.Number(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    if (family == AF_INET6) ::setsockopt(made.Number(), IPPROTO_IPV6, IPV6_V6ONLY, &no, sizeof no);
    return made;
}

Descriptor BindBoth(std::uint16_t port) {
    Descriptor made = NewSocket(AF_INET6);
    sockaddr_in6 place{};
    place.sin6_family = AF_INET6;
    place.sin6_addr = in6addr_any;
    place.sin6_port = htons(port);
    return made && Bind(made.Number(), place) ? std::move(made) : Descriptor();
}

Descriptor BindOld(std::uint16_t port) {
    Descriptor made = NewSocket(AF_INET);
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_addr.s_addr = htonl(INADDR_ANY);
    place.sin_port = htons(port);
    return made && Bind(made.Number(), place) ? std::move(made) : Descriptor();
}

Descriptor OpenSpare() { return Descriptor(::open("/dev/null", O_RDONLY | O_CLOEXEC)); }

}  // namespace

std::string PosixListener::Listen(int port) {
    Close();
    const auto number = static_cast<std::uint16_t>(port);
    errno = 0;
    Descriptor made = BindBoth(number);
    if (!made && errno != EADDRINUSE && errno != EACCES) made = BindOld(number);
    if (!made) return std::generic_category().message(errno);
    token_ = sockets_.Poll().Add(made.Number(), EPOLLIN, *this);
    if (token_ == 0) return std::generic_category().message(errno);
    socket_ = std::move(made);
    spare_ = OpenSpare();
    return {};
}

void PosixListener::Close() {
    if (token_ != 0) sockets_.Poll().Remove(token_, socket_.Number());
    token_ = 0;
    socket_ = Descriptor();
    spare_ = Descriptor();
}

void PosixListener::Ready(std::uint32_t) {
    for (int i = 0; i < AcceptedAtOnce && socket_; ++i) {
        Descriptor caller(::accept4(socket_.Number(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
        if (!caller) {
            if (errno == EMFILE || errno == ENFILE) Refuse();
            return;
        }
        Descriptor& offered = sockets_.Offered();
        offered = std::move(caller);
        events_.Socket_ConnectionRequest(offered.Number());
        offered = Descriptor();
    }
}

/// A caller who is never taken would be announced again and again.
void PosixListener::Refuse() {
    spare_ = Descriptor();
    Descriptor(::accept4(socket_.Number(), nullptr, nullptr, SOCK_CLOEXEC));
    spare_ = OpenSpare();
}

}  // namespace tessaloom
