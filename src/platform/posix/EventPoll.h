#pragma once

#include <sys/epoll.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/posix/Descriptor.h"

namespace tessaloom {

/// Who waits for something on a descriptor.
class PollHandler {
public:
    /// events: EPOLL... flags.
    virtual void Ready(std::uint32_t events) = 0;

protected:
    ~PollHandler() = default;
};

/// Many descriptors behind one (epoll), which the program's event loop watches.
class EventPoll {
public:
    /// Names a descriptor that is watched; 0 names none.
    using Token = std::uint64_t;

    /// Throws std::system_error where the system has no more descriptors.
    EventPoll();

    /// Readable whenever `Dispatch` has something to do.
    int Number() const { return epoll_.Number(); }

    /// 0 when it cannot be watched. The handler must stay until `Remove`.
    Token Add(int descriptor, std::uint32_t events, PollHandler& handler);
    void Change(Token token, int descriptor, std::uint32_t events);
    void Remove(Token token, int descriptor);

    /// Tells the handlers what has happened, for about a millisecond at most; what is left over then is told
    /// first by the next call, so that everybody has his turn. Handlers may add and remove any descriptor,
    /// and dispatch themselves; none is told of what happened to a removed one.
    void Dispatch();

private:
    struct Entry {
        PollHandler* handler = nullptr;
        std::uint32_t generation = 1;
    };

    bool Fetch();

    Descriptor epoll_;
    std::array<epoll_event, 64> events_;
    std::size_t told_ = 0, fetched_ = 0;  ///< Of `events_`.
    std::vector<Entry> entries_;
    std::vector<std::uint32_t> free_;  ///< Entries without a handler.
};

}  // namespace tessaloom
