#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace tessaloom {

/// Bytes that many connections may be sending at the same time. Never changed once they are shared.
using SharedBytes = std::shared_ptr<const std::string>;

/// Who hears what happens on a connection. All of it comes between two ticks, never from within a call of the
/// connection's own functions; what is called may close the connection and use it anew.
class ConnectionEvents {
public:
    virtual void Socket_DataArrival(std::string_view bytes) = 0;

    /// What `Send` left over has gone, or `NotifySent` was asked for.
    virtual void Socket_SendComplete() = 0;

    /// The other side has closed or gone away. The connection is closed already.
    virtual void Socket_Close() = 0;

    /// Anything else that ends a connection. It is closed already.
    virtual void Socket_Error(std::string_view description) = 0;

protected:
    ~ConnectionEvents() = default;
};

/// One end of a connection, closed at first and after every `Close`. Destroying it closes it.
///
/// Nothing waits: what the network does not take at once is kept, by reference, and follows when it can.
/// While bytes are kept nothing is read, so a client cannot ask for more than it takes; `IgnoreInput` changes
/// that.
class ConnectionSocket {
public:
    virtual ~ConnectionSocket() = default;

    /// Takes the connection that a listener offers right now. False when that failed; it then stays closed.
    virtual bool Accept(int requestID) = 0;

    /// Not closed yet; also while it closes.
    virtual bool Open() const = 0;

    /// The address of the other side: "192.0.2.7", "2001:db8::7".
    virtual const std::string& RemoteHostIP() const = 0;

    /// Sends `head`, then `body` (may be null). True when all of it has gone; else `Socket_SendComplete`
    /// follows, and until then there must be no other `Send`.
    virtual bool Send(std::string head, SharedBytes body) = 0;

    /// Asks for one `Socket_SendComplete`, soon, when others have had their turn.
    virtual void NotifySent() = 0;

    /// From now on what comes in is dropped, within reason, also while bytes are kept: who sends all he has
    /// before he reads must not wait for us while we wait for him.
    virtual void IgnoreInput() = 0;

    /// Closes when what is kept has gone, without spoiling its arrival: input is ignored until the other side
    /// closes, too (`Socket_Close`). How long that may take is the caller's business.
    virtual void CloseWhenSent() = 0;

    /// Closes at once and drops what is kept. No event follows.
    virtual void Close() = 0;

    /// Bytes that have arrived at the other side since `Accept`: tells a slow reader from a silent one.
    virtual std::uint64_t BytesArrived() const = 0;
};

/// Who is offered connections.
class ListenerEvents {
public:
    /// A connection waits to be taken by `ConnectionSocket::Accept(requestID)`, now; otherwise it is closed.
    virtual void Socket_ConnectionRequest(int requestID) = 0;

protected:
    ~ListenerEvents() = default;
};

/// Waits for connections on one port. Destroying it closes it.
class ListenerSocket {
public:
    virtual ~ListenerSocket() = default;

    /// Listens on `port` of every address of this computer. "" when that succeeded, else why not.
    virtual std::string Listen(int port) = 0;
    virtual void Close() = 0;
};

/// Makes sockets, which it must outlive. The program's event loop moves them along.
class Sockets {
public:
    virtual ~Sockets() = default;

    /// The events' receiver outlives the socket.
    virtual std::unique_ptr<ListenerSocket> MakeListener(ListenerEvents& events) = 0;
    virtual std::unique_ptr<ConnectionSocket> MakeConnection(ConnectionEvents& events) = 0;
};

/// Sockets of a program that stays off the network: no port can be listened on.
Sockets& NoSockets();

}  // namespace tessaloom
