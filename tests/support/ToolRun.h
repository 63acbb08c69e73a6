#pragma once

#include <string>
#include <vector>

namespace tavocal::test {

// What a finished program left behind.
struct ToolResult {
    std::string output;  // standard output, standard error behind it
    int status = -1;     // exit status; 128 + the signal if one ended it
};

// Runs the built program with these arguments in `folder`, with nothing on its standard input.
ToolResult runTavocal(const std::string& folder, const std::vector<std::string>& arguments);

// The same with a simulated firmware and operator around it. `device` are options of the simulator.
ToolResult runLive(const std::string& folder, const std::vector<std::string>& device,
                   const std::vector<std::string>& arguments);

// Runs the built simulator with these arguments in `folder`. With a text in `interruptAt` it gets
// the interrupt signal, which it hands on to the tool, once that has been shown.
ToolResult runSimulator(const std::string& folder, const std::vector<std::string>& arguments,
                        const std::string& interruptAt = {});

// The part of `text` from `begin` on; empty if it isn't there.
std::string from(const std::string& text, const std::string& begin);

}  // namespace tavocal::test
