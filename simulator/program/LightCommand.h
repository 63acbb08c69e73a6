#pragma once

#include <string>
#include <vector>

namespace tavocal::simulator {

// Whether the arguments behind "record" ask for light and not for motion.
bool asksForLight(const std::vector<std::string>& arguments);

// Runs the command. Throws ArgumentError, and OutputError if the files can't be written.
void runLightCommand(const std::vector<std::string>& arguments);

// The options of the command, for the usage text.
std::string lightUsage();

}  // namespace tavocal::simulator
