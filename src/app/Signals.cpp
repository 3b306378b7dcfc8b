#include "app/Signals.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <cerrno>
#include <utility>

namespace tessaloom {

namespace {

constexpr int Caught[] = {SIGTERM, SIGINT, SIGHUP, SIGUSR1};

int pipeEnds[2] = {-1, -1};
volatile sig_atomic_t endAsked = 0;

extern "C" void Catch(int number) {
    if (number == SIGTERM || number == SIGINT) {
        if (endAsked) _exit(128 + number);
        endAsked = 1;
    }
    const int saved = errno;
    const unsigned char byte = static_cast<unsigned char>(number);
    // A full pipe already holds more than anyone asked for.
    [[maybe_unused]] const ssize_t written = write(pipeEnds[1], &byte, 1);
    errno = saved;
}

}  // namespace

Signals::Signals(Handlers handlers) : handlers_(std::move(handlers)) {
    if (pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0) return;
    notifier_ = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { Deliver(); });
    struct sigaction action {};
    action.sa_handler = Catch;
    action.sa_flags = SA_RESTART;
    for (const int number : Caught) sigaction(number, &action, nullptr);
    signal(SIGPIPE, SIG_IGN);
}

Signals::~Signals() {
    for (const int number : Caught) signal(number, SIG_DFL);
    notifier_.reset();
    for (int& end : pipeEnds)
        if (end >= 0) close(std::exchange(end, -1));
}

void Signals::Deliver() {
    unsigned char number = 0;
    while (read(pipeEnds[0], &number, 1) == 1) {
        switch (number) {
            case SIGHUP:
                handlers_.reload();
                break;
            case SIGUSR1:
                handlers_.force();
                break;
            default:
                handlers_.end();
                break;
        }
    }
}

}  // namespace tessaloom
