#include <csignal>
#include <thread>
#include <utility>

#include "platform/Interrupt.h"

namespace tavocal::platform {

namespace {

bool isIgnored(int signal) {
    struct sigaction action {};
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

// Whoever starts a process with one of the other two ignored wants it to outlive him.
sigset_t endingSignals() {
    // A shell starts background jobs with the interrupt ignored, and so it might never arrive.
    std::signal(SIGINT, SIG_DFL);
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        if (!isIgnored(signal)) {
            sigaddset(&signals, signal);
        }
    }
    return signals;
}

}  // namespace

void installInterruptHandler(std::function<void(int)> handler) {
    const sigset_t signals = endingSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::thread([signals, handler = std::move(handler)] {
        int signal = 0;
        if (sigwait(&signals, &signal) == 0) {
            handler(signal);
        }
    }).detach();
}

void hardenProcess() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace tavocal::platform
