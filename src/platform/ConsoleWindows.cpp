#include <windows.h>

#include <cstdio>

#include "base/Text.h"
#include "platform/Console.h"

namespace tavocal::platform {

Console& Console::instance() {
    static auto* const console = new Console;
    return *console;
}

Console::Console() : coloured(false) {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    coloured = GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info) != 0;
}

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
    if (!coloured) {
        return;
    }
    flush();
    CONSOLE_SCREEN_BUFFER_INFO info{};
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    GetConsoleScreenBufferInfo(output, &info);
    savedConsoleAttribute = info.wAttributes;
    SetConsoleTextAttribute(output, static_cast<WORD>(attribute));
}

void Console::resetConsoleColour() {
    if (!coloured) {
        return;
    }
    flush();
    SetConsoleTextAttribute(GetStdHandle(STD_OUTPUT_HANDLE),
                            static_cast<WORD>(savedConsoleAttribute));
}

bool Console::readCharacter(char& character) {
    flush();
    const int got = std::getchar();
    if (got == EOF) {
        return false;
    }
    character = static_cast<char>(got);
    return true;
}

bool Console::readLine(std::string& line) {
    flush();
    line.clear();
    int got = std::getchar();
    if (got == EOF) {
        return false;
    }
    while (got != EOF && got != '\n') {
        line.push_back(static_cast<char>(got));
        got = std::getchar();
    }
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    return true;
}

}  // namespace tavocal::platform
