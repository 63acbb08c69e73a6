#pragma once

#include <string>

namespace tavocal::platform {

// Starts the file of that name in the working directory as a process of its own, hidden, without
// arguments and without a shell, and returns at once. Nobody waits for it and nothing of this
// process stays open in it. On POSIX it has to be an executable file; anything else starts nothing.
// A failure is no failure of the caller's, so it is not reported.
void startDetached(const std::string& fileName);

}  // namespace tavocal::platform
