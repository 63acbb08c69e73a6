#include <csignal>
#include <thread>
#include <utility>

#include "platform/Interrupt.h"

namespace tavocal::platform {

void installInterruptHandler(std::function<void(int)> handler) {
    sigset_t interrupt;
    sigemptyset(&interrupt);
    sigaddset(&interrupt, SIGINT);
    pthread_sigmask(SIG_BLOCK, &interrupt, nullptr);
    // A shell starts background jobs with the signal ignored, and an ignored signal never arrives.
    std::signal(SIGINT, SIG_DFL);
    std::thread([interrupt, handler = std::move(handler)] {
        int signal = 0;
        if (sigwait(&interrupt, &signal) == 0) {
            handler(signal);
        }
    }).detach();
}

void hardenProcess() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace tavocal::platform
