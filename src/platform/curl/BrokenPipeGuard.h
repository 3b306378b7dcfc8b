#pragma once

#include <csignal>
#include <ctime>

namespace tessaloom {

/// Keeps a connection that the other side has closed from ending the program: while it lives, a signal that
/// tells of one is held back from this thread, and dropped at the end.
class BrokenPipeGuard {
public:
    BrokenPipeGuard() {
        sigset_t pending;
        sigpending(&pending);
        pendingBefore_ = sigismember(&pending, SIGPIPE) == 1;
        sigemptyset(&signals_);
        sigaddset(&signals_, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &signals_, &before_);
    }
    ~BrokenPipeGuard() {
        const timespec atOnce{};
        if (!pendingBefore_)
            while (sigtimedwait(&signals_, nullptr, &atOnce) == SIGPIPE) {}
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    BrokenPipeGuard(const BrokenPipeGuard&) = delete;
    BrokenPipeGuard& operator=(const BrokenPipeGuard&) = delete;

private:
    sigset_t signals_;
    sigset_t before_;
    bool pendingBefore_;
};

}  // namespace tessaloom
