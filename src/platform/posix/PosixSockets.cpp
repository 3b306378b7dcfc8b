#include "platform/posix/PosixSockets.h"

#include "platform/posix/PosixConnection.h"
#include "platform/posix/PosixListener.h"

namespace tessaloom {

std::unique_ptr<ListenerSocket> PosixSockets::MakeListener(ListenerEvents& events) {
    return std::make_unique<PosixListener>(*this, events);
}

std::unique_ptr<ConnectionSocket> PosixSockets::MakeConnection(ConnectionEvents& events) {
    return std::make_unique<PosixConnection>(*this, events);
}

}  // namespace tessaloom
