#pragma once

#include <string>
#include <vector>

#include "simulator/Recording.h"

namespace tavocal::simulator {

// What `tavosim record` was asked to do.
struct RecordRequest {
    RecordingOptions options;
    std::string folder;
    bool crlf = false;
};

// Reads the arguments behind "record". Throws ArgumentError.
RecordRequest parseRecordArguments(const std::vector<std::string>& arguments);

// Runs the command. The result is the exit status: 0, or 1 with a message on standard error if the
// files can't be written. Throws ArgumentError.
int runRecordCommand(const std::vector<std::string>& arguments);

// The options of the command, for the usage text.
std::string recordUsage();

}  // namespace tavocal::simulator
