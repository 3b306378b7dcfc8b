#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "support/Testing.h"

namespace tessaloom::testing {

inline sockaddr_in LocalPlace(int port) {
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    place.sin_port = htons(static_cast<std::uint16_t>(port));
    return place;
}

/// A socket of its own on a port of 127.0.0.1 that nobody used before, for TCP one that listens. `port` gets
/// its number.
inline int OpenLocally(int& port, int type = SOCK_STREAM) {
    const int handle = ::socket(AF_INET, type | SOCK_CLOEXEC, 0);
    sockaddr_in place = LocalPlace(0);
    socklen_t size = sizeof place;
    if (::bind(handle, reinterpret_cast<sockaddr*>(&place), size) != 0) throw std::runtime_error("no port");
    if (type == SOCK_STREAM) ::listen(handle, 64);
    ::getsockname(handle, reinterpret_cast<sockaddr*>(&place), &size);
    port = ntohs(place.sin_port);
    return handle;
}

/// A port that nobody uses just now.
inline int FreePort(int type = SOCK_STREAM) {
    int port = 0;
    ::close(OpenLocally(port, type));
    return port;
}

/// Whether somebody takes connections there.
inline bool Connects(int handle, int port) {
    const sockaddr_in place = LocalPlace(port);
    return ::connect(handle, reinterpret_cast<const sockaddr*>(&place), sizeof place) == 0;
}

}  // namespace tessaloom::testing
