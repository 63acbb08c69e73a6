#pragma once

#include <functional>

namespace tavocal::platform {

// Starts a thread of its own that waits for the interrupt signal (2) and then calls `handler` with
// the signal's number, once, on that thread. Nothing runs inside a signal handler. To be called
// once, before any other thread starts: threads inherit what makes the signal wait.
void installInterruptHandler(std::function<void(int)> handler);

// What the platform needs done before anything else: a hardened library search path on Windows; on
// POSIX a closed output pipe or a file beyond its limit of size that fails writes instead of
// killing the process.
void hardenProcess();

}  // namespace tavocal::platform
