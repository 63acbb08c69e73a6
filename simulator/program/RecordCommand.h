#pragma once

#include <string>
#include <vector>

namespace tavocal::simulator {

// Runs the command. Throws ArgumentError, and OutputError if the files can't be written.
void runRecordCommand(const std::vector<std::string>& arguments);

// The options of the command, for the usage text.
std::string recordUsage();

}  // namespace tavocal::simulator
