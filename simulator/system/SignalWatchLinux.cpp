#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

#include "simulator/system/SignalWatch.h"

namespace tavocal::simulator {

namespace {

sigset_t watchedSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGCHLD}) {
        sigaddset(&signals, number);
    }
    return signals;
}

}  // namespace

SignalWatch::SignalWatch() {
    const sigset_t signals = watchedSignals();
    // A shell starts background jobs with the signal ignored, and an ignored signal never arrives.
    std::signal(SIGINT, SIG_DFL);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    signalFile = signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
    if (signalFile < 0) {
        throw std::runtime_error("Can't watch for signals");
    }
}

SignalWatch::~SignalWatch() {
    close(signalFile);
    const sigset_t signals = watchedSignals();
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
}

int SignalWatch::take() {
    signalfd_siginfo info{};
    while (read(signalFile, &info, sizeof(info)) == static_cast<ssize_t>(sizeof(info))) {
        if (info.ssi_signo != SIGCHLD) {
            return static_cast<int>(info.ssi_signo);
        }
    }
    return 0;
}

}  // namespace tavocal::simulator
