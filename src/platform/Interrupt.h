#pragma once

#include <functional>

namespace tavocal::platform {

// Starts a thread of its own that waits for a signal that asks the process to end, and then calls
// `handler` with the signal's number, once, on that thread: the interrupt (2), on POSIX also the
// hang-up (1) and the request to terminate (15), on Windows, as a hang-up, that the window is
// closed, the user logs off or the system shuts down, which leaves a process 5 seconds. Nothing
// runs inside a signal handler. To be called once, before any other thread starts: threads inherit
// what makes a signal wait.
void installInterruptHandler(std::function<void(int)> handler);

// What the platform needs done before anything else: a hardened library search path on Windows; on
// POSIX a closed output pipe or a file beyond its limit of size that fails writes instead of
// killing the process.
void hardenProcess();

}  // namespace tavocal::platform
