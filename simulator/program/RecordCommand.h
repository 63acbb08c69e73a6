#pragma once

#include <string>
#include <vector>

#include "simulator/recording/Recording.h"

namespace tavocal::simulator {

// What `tavosim record` was asked to do with a flow of the motion sensors.
struct RecordRequest {
    RecordingOptions options;
    bool flowGiven = false;
    std::string folder;
    bool crlf = false;
};

// Reads the arguments behind "record". Throws ArgumentError.
RecordRequest parseRecordArguments(const std::vector<std::string>& arguments);

// Runs the command. Throws ArgumentError, and OutputError if the files can't be written.
void runRecordCommand(const std::vector<std::string>& arguments);

// The options of the command, for the usage text.
std::string recordUsage();

}  // namespace tavocal::simulator
