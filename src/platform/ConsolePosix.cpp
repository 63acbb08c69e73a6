#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/Console.h"

namespace tavocal::platform {

// A new descriptor is the lowest that is free, which is the one looked at. A folder can neither be
// read nor written.
void openStandardFiles() {
    for (int file = STDIN_FILENO; file <= STDERR_FILENO; ++file) {
        if (fcntl(file, F_GETFD) < 0 && open("/dev/null", O_RDWR) < 0) {
            open("/", O_RDONLY);
        }
    }
}

Console::Console() : coloured(isatty(STDOUT_FILENO) == 1) {}

void Console::setConsoleColour(int attribute) {
    if (coloured) {
        write(attribute == kLightGreen ? "\x1b[92m" : "\x1b[91m");
    }
}

void Console::resetConsoleColour() {
    if (coloured) {
        write("\x1b[0m");
        flush();
    }
}

// Standard input is read without stdio, whose lock a thread blocked in a read would hold while
// another one calls `exit`.
bool Console::readCharacter(char& character) {
    flush();
    ssize_t got = 0;
    do {
        got = ::read(STDIN_FILENO, &character, 1);
    } while (got < 0 && errno == EINTR);
    return got == 1;
}

}  // namespace tavocal::platform
