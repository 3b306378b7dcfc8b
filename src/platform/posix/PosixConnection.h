#pragma once

#include <sys/types.h>

#include <cstddef>

#include "platform/posix/PosixSockets.h"

namespace tessaloom {

/// One TCP connection, of bounded cost: it keeps one message (its head, and a reference to its body), reads
/// only when that has gone, or to drop it, and only a little at a time.
class PosixConnection final : public ConnectionSocket, private PollHandler {
public:
    PosixConnection(PosixSockets& sockets, ConnectionEvents& events) : sockets_(sockets), events_(events) {}
    ~PosixConnection() override { Close(); }

    bool Accept(int requestID) override;
    bool Open() const override { return static_cast<bool>(socket_); }
    const std::string& RemoteHostIP() const override { return remoteHostIP_; }
    bool Send(std::string head, SharedBytes body) override;
    void NotifySent() override;
    void IgnoreInput() override;
    void CloseWhenSent() override;
    void Close() override;
    std::uint64_t BytesArrived() const override;

private:
    enum class Input {
        Heard,
        Ignored,
        Over,  ///< Nothing is read any more: the other side has ended it, or sent too much of it.
    };

    void Ready(std::uint32_t) override;
    void Receive();
    bool Drop();
    void GoOn();
    bool Flush();
    ssize_t SendUpTo(std::size_t end);
    void BeginDraining();
    void Fail(int error);
    void Watch(bool sending);

    PosixSockets& sockets_;
    ConnectionEvents& events_;
    Descriptor socket_;
    EventPoll::Token token_ = 0;
    std::uint32_t watched_ = 0;  ///< EPOLLIN, EPOLLOUT.
    std::string remoteHostIP_;
    std::string head_;
    SharedBytes body_;
    std::size_t sent_ = 0;         ///< Bytes of head and body together.
    std::uint64_t bytesSent_ = 0;  ///< Taken by the system, which may still hold megabytes of them.
    std::size_t dropped_ = 0;
    int failure_ = 0;  ///< An errno that is still to be told.
    Input input_ = Input::Heard;
    bool closing_ = false;
    bool draining_ = false;
};

}  // namespace tessaloom
