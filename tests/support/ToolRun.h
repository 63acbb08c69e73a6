#pragma once

#include <string>
#include <vector>

namespace tavocal::test {

// What a finished program left behind.
struct ToolResult {
    std::string output;  // standard output and standard error, as they came
    int status = -1;     // exit status; 128 + the signal if one ended it
};

// Runs a program in `folder` with nothing on its standard input. The words "tavocal" and "tavosim"
// stand for the built programs. Once it has shown `interruptAt`, it gets an interrupt; one that is
// silent for 20 seconds is ended.
ToolResult runProgram(const std::string& folder, std::vector<std::string> words,
                      const std::string& interruptAt = {});

}  // namespace tavocal::test
