#include <windows.h>

#include <utility>

#include "platform/Interrupt.h"

namespace tavocal::platform {

namespace {

std::function<void(int)>& storedHandler() {
    static auto* const handler = new std::function<void(int)>;
    return *handler;
}

// The system calls it on a thread of its own, and ends the process once it has returned from
// anything but the two keys.
BOOL WINAPI onControl(DWORD event) {
    constexpr int kInterrupt = 2;
    constexpr int kHangUp = 1;
    storedHandler()(event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT ? kInterrupt : kHangUp);
    return TRUE;
}

}  // namespace

void installInterruptHandler(std::function<void(int)> handler) {
    storedHandler() = std::move(handler);
    SetConsoleCtrlHandler(onControl, TRUE);
}

void hardenProcess() {
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    SetDllDirectoryW(L"");
}

}  // namespace tavocal::platform
