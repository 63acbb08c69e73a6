#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "base/Text.h"
#include "platform/Console.h"

namespace tavocal::platform {

Console& Console::instance() {
    static auto* const console = new Console;
    return *console;
}

Console::Console() : coloured(isatty(STDOUT_FILENO) == 1) {}

void Console::write(std::string_view text) {
    const std::lock_guard<std::mutex> lock(mutex);
    std::fwrite(text.data(), 1, text.size(), stdout);
}

void Console::write(std::wstring_view text) {
    write(std::string_view(toUtf8(text)));
}

void Console::flush() {
    const std::lock_guard<std::mutex> lock(mutex);
    std::fflush(stdout);
}

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

bool Console::readLine(std::string& line) {
    line.clear();
    char character = 0;
    bool got = readCharacter(character);
    const bool any = got;
    while (got && character != '\n') {
        line.push_back(character);
        got = readCharacter(character);
    }
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    return any;
}

}  // namespace tavocal::platform
