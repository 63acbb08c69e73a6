#include <windows.h>

#include <cstdio>

#include "platform/Console.h"

namespace tavocal::platform {

// The runtime library keeps the three for itself, also where the program starts without them.
void openStandardFiles() {}

Console::Console() : coloured(false) {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    coloured = GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info) != 0;
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

}  // namespace tavocal::platform
