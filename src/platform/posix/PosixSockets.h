#pragma once

#include "platform/Sockets.h"
#include "platform/posix/EventPoll.h"

namespace tessaloom {

/// TCP sockets on one `EventPoll`. The program's event loop watches `Number` and calls `Dispatch`, from which
/// all events come.
class PosixSockets final : public Sockets {
public:
    std::unique_ptr<ListenerSocket> MakeListener(ListenerEvents& events) override;
    std::unique_ptr<ConnectionSocket> MakeConnection(ConnectionEvents& events) override;

    /// Readable whenever `Dispatch` has something to do.
    int Number() const { return poll_.Number(); }
    void Dispatch() { poll_.Dispatch(); }

    // For the sockets themselves

    EventPoll& Poll() { return poll_; }

    /// The connection that is offered right now; its descriptor's number is the request's.
    Descriptor& Offered() { return offered_; }

private:
    EventPoll poll_;
    Descriptor offered_;
};

}  // namespace tessaloom
