#pragma once

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "support/Testing.h"

namespace tessaloom::testing {

/// Whether a process is to die now, asked whenever it enters a system call.
using Moment = std::function<bool()>;

/// The exit status of a child that may not be traced.
inline constexpr int Untraceable = 120;

/// Called by a child that is traced from its next stop (or start of a program) on.
inline void LetTrace() {
    if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) ::_exit(Untraceable);
}

/// Waits until the child stops or ends, for its status.
inline int StatusOf(pid_t child) {
    int status = 0;
    if (::waitpid(child, &status, 0) != child) throw std::runtime_error("lost the child");
    return status;
}

/// Follows a child that lets it be traced, and kills it at this moment of its first thread, before the system
/// call does anything. The status of its end. From the thread that began the child.
inline int KillAt(const Moment& moment, pid_t child) {
    int status = StatusOf(child);
    if (WIFSTOPPED(status))
        ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    bool inCall = false;
    for (int signal = 0; WIFSTOPPED(status);) {
        ::ptrace(PTRACE_SYSCALL, child, nullptr, signal);
        status = StatusOf(child);
        const bool atCall = WIFSTOPPED(status) && WSTOPSIG(status) == (SIGTRAP | 0x80);
        signal = atCall || !WIFSTOPPED(status) ? 0 : WSTOPSIG(status);
        if (!atCall) continue;
        inCall = !inCall;
        if (inCall && moment()) ::kill(child, SIGKILL);
    }
    return status;
}

/// Whether that was the end of a child that may not be traced.
inline bool WasUntraceable(int status) { return WIFEXITED(status) && WEXITSTATUS(status) == Untraceable; }

}  // namespace tessaloom::testing
