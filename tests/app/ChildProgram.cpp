#include "app/ChildProgram.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessaloom::testing {

namespace {

constexpr int ExecFailed = 127;
constexpr unsigned Nobody = 65534;

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

/// Waits for an event on `handle` (-1: for none), to the microsecond.
void Wait(int handle, double milliseconds) {
    pollfd event{.fd = handle, .events = POLLIN, .revents = 0};
    const auto nanoseconds = static_cast<long long>(milliseconds * 1e6);
    const timespec time{.tv_sec = nanoseconds / 1'000'000'000, .tv_nsec = nanoseconds % 1'000'000'000};
    ppoll(&event, 1, &time, nullptr);
}

}  // namespace

ChildProgram::ChildProgram(const std::string& folder, const std::vector<std::string>& arguments,
                           const Options& options) {
    std::vector<std::string> words{TESSALOOM_PROGRAM, "--home", folder};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> variables{"HOME=" + own_.Path(), "XDG_DATA_HOME=" + own_.Path(),
                                       "XDG_RUNTIME_DIR=" + own_.Path()};
    variables.insert(variables.end(), options.environment.begin(), options.environment.end());
    const std::vector<char*> argv = Pointers(words);
    const std::vector<char*> settings = Pointers(variables);
    const int output = open((own_ / "output").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    const int log = open((own_ / "log").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);

    process_ = fork();
    if (process_ == 0) {
        for (char* setting : settings)
            if (setting) putenv(setting);
        dup2(output, STDOUT_FILENO);
        dup2(log, STDERR_FILENO);
        const bool dropped =
            !options.unprivileged || geteuid() != 0 || (setgid(Nobody) == 0 && setuid(Nobody) == 0);
        if (options.traced) LetTrace();
        if (dropped) execv(argv[0], argv.data());
        _exit(ExecFailed);
    }
    close(output);
    close(log);
    handle_ = static_cast<int>(syscall(SYS_pidfd_open, process_, 0));
}

ChildProgram::~ChildProgram() {
    if (process_ > 0) {
        Send(SIGKILL);
        waitpid(process_, nullptr, 0);
    }
    if (handle_ >= 0) close(handle_);
}

void ChildProgram::Send(int signal) const {
    if (process_ > 0) kill(process_, signal);
}

bool ChildProgram::EndsWithin(double milliseconds) {
    if (process_ <= 0) return true;
    if (milliseconds > 0) Wait(handle_, milliseconds);
    int status = 0;
    if (waitpid(process_, &status, WNOHANG) != process_) return false;
    End(status);
    return true;
}

int ChildProgram::DiesAt(const Moment& moment) {
    End(KillAt(moment, process_));
    return status_;
}

void ChildProgram::End(int status) {
    status_ = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    process_ = 0;
}

int ChildProgram::Status() {
    EndsWithin(Patience);
    return status_;
}

std::string ChildProgram::Output() const { return BytesOf(own_ / "output"); }

std::string ChildProgram::Log() const { return BytesOf(own_ / "log"); }

bool Becomes(const std::function<bool()>& condition) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::duration<double, std::milli>(ChildProgram::Patience);
    while (!condition()) {
        if (Clock::now() > end) return false;
        Wait(-1, 2);
    }
    return true;
}

}  // namespace tessaloom::testing
