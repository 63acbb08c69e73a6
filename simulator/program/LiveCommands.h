#pragma once

#include <string>
#include <vector>

namespace tavocal::simulator {

// `tavosim run`: a firmware on "tavo.sock" in the working directory, the tool beside it, and an
// operator who does what it asks for. The result is the tool's exit status. Throws ArgumentError,
// OutputError and std::runtime_error.
int runRunCommand(const std::vector<std::string>& arguments);

// `tavosim serve`: the same firmware for a person who plays the operator, by lines on the standard
// input, until the interrupt signal. Throws as above.
void runServeCommand(const std::vector<std::string>& arguments);

// For the usage text.
std::string liveUsage();

}  // namespace tavocal::simulator
