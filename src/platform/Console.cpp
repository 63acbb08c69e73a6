#include "platform/Console.h"

#include <cstdio>

#include "base/Text.h"

namespace tavocal::platform {

Console& Console::instance() {
    static auto* const console = new Console;
    return *console;
}

void Console::write(std::string_view text) {
    const std::lock_guard<std::mutex> lock(mutex);
    std::fwrite(text.data(), 1, text.size(), stdout);
}

void Console::write(std::wstring_view text) {
    write(std::string_view(toUtf8(text)));
}

void Console::writeColoured(int attribute, std::string_view text) {
    setConsoleColour(attribute);
    write(text);
    resetConsoleColour();
}

void Console::flush() {
    const std::lock_guard<std::mutex> lock(mutex);
    std::fflush(stdout);
}

// False if the input ended first.
bool Console::dropRestOfLine() {
    char character = 0;
    while (lineWasCut && readCharacter(character)) {
        lineWasCut = character != '\n';
    }
    return !lineWasCut;
}

bool Console::readLine(std::string& line) {
    line.clear();
    char character = 0;
    bool got = dropRestOfLine() && readCharacter(character);
    const bool any = got;
    while (got && character != '\n') {
        line.push_back(character);
        lineWasCut = line.size() == kLongestLine;
        got = !lineWasCut && readCharacter(character);
    }
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    return any;
}

}  // namespace tavocal::platform
