#pragma once

#include <functional>
#include <memory>

class QSocketNotifier;

namespace tessaloom {

/// Brings the process's signals into the event loop, which must exist before it. One object at a time.
///
/// SIGTERM and SIGINT call `end`; a second one ends the process at once with status 128 + its number.
class Signals {
public:
    struct Handlers {
        std::function<void()> end;     ///< SIGTERM, SIGINT
        std::function<void()> reload;  ///< SIGHUP
        std::function<void()> force;   ///< SIGUSR1
    };

    explicit Signals(Handlers handlers);
    ~Signals();
    Signals(const Signals&) = delete;
    Signals& operator=(const Signals&) = delete;

private:
    void Deliver();

    Handlers handlers_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace tessaloom
