#pragma once

#include "platform/posix/PosixSockets.h"

namespace tessaloom {

/// A listening TCP socket, for both families of addresses where the system has both.
class PosixListener final : public ListenerSocket, private PollHandler {
public:
    PosixListener(PosixSockets& sockets, ListenerEvents& events) : sockets_(sockets), events_(events) {}
    ~PosixListener() override { Close(); }

    std::string Listen(int port) override;
    void Close() override;

private:
    void Ready(std::uint32_t) override;
    void Refuse();

    PosixSockets& sockets_;
    ListenerEvents& events_;
    Descriptor socket_;
    Descriptor spare_;  ///< Given up for a moment to turn a caller away when the program has no more.
    EventPoll::Token token_ = 0;
};

}  // namespace tessaloom
