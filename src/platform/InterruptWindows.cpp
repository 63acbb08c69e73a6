#include <windows.h>

#include <csignal>
#include <utility>

#include "platform/Interrupt.h"

namespace tavocal::platform {

namespace {

std::function<void(int)>& storedHandler() {
    static auto* const handler = new std::function<void(int)>;
    return *handler;
}

// The system calls it on a thread of its own.
void onSignal(int signal) {
    storedHandler()(signal);
}

}  // namespace

void installInterruptHandler(std::function<void(int)> handler) {
    storedHandler() = std::move(handler);
    std::signal(SIGINT, onSignal);
}

void hardenProcess() {
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    SetDllDirectoryW(L"");
}

}  // namespace tavocal::platform
