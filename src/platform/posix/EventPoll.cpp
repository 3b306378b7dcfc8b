#include "platform/posix/EventPoll.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <system_error>

namespace tessaloom {

namespace {

/// Ticks wait for no longer than this, and what one event takes.
constexpr std::chrono::milliseconds Slice{1};

std::uint32_t IndexOf(EventPoll::Token token) { return static_cast<std::uint32_t>(token); }
std::uint32_t GenerationOf(EventPoll::Token token) { return static_cast<std::uint32_t>(token >> 32); }

epoll_event EventFor(EventPoll::Token token, std::uint32_t events) {
    epoll_event event{};
    event.events = events;
    event.data.u64 = token;
    return event;
}

}  // namespace

EventPoll::EventPoll() : epoll_(::epoll_create1(EPOLL_CLOEXEC)) {
    if (!epoll_) throw std::system_error(errno, std::generic_category(), "epoll");
}

EventPoll::Token EventPoll::Add(int descriptor, std::uint32_t events, PollHandler& handler) {
    if (free_.empty()) {
        free_.push_back(static_cast<std::uint32_t>(entries_.size()));
        entries_.emplace_back();
    }
    const std::uint32_t index = free_.back();
    const Token token = Token{entries_[index].generation} << 32 | index;
    epoll_event event = EventFor(token, events);
    if (::epoll_ctl(epoll_.Number(), EPOLL_CTL_ADD, descriptor, &event) != 0) return 0;
    free_.pop_back();
    entries_[index].handler = &handler;
    return token;
}

void EventPoll::Change(Token token, int descriptor, std::uint32_t events) {
    epoll_event event = EventFor(token, events);
    ::epoll_ctl(epoll_.Number(), EPOLL_CTL_MOD, descriptor, &event);
}

void EventPoll::Remove(Token token, int descriptor) {
    Entry& entry = entries_[IndexOf(token)];
    if (entry.generation != GenerationOf(token)) return;
    epoll_event unused{};
    ::epoll_ctl(epoll_.Number(), EPOLL_CTL_DEL, descriptor, &unused);
    entry.handler = nullptr;
    ++entry.generation;
    free_.push_back(IndexOf(token));
}

void EventPoll::Dispatch() {
    const auto end = std::chrono::steady_clock::now() + Slice;
    while (told_ < fetched_ || Fetch()) {
        const epoll_event event = events_[told_++];
        const Entry& entry = entries_[IndexOf(event.data.u64)];
        if (entry.handler && entry.generation == GenerationOf(event.data.u64))
            entry.handler->Ready(event.events);
        if (std::chrono::steady_clock::now() > end) return;
    }
}

bool EventPoll::Fetch() {
    const int count = ::epoll_wait(epoll_.Number(), events_.data(), static_cast<int>(events_.size()), 0);
    told_ = 0;
    fetched_ = static_cast<std::size_t>(std::max(count, 0));
    return fetched_ > 0;
}

}  // namespace tessaloom
