#pragma once

#include <string>
#include <vector>

#include "simulator/hub/Flash.h"
#include "simulator/live/LiveOptions.h"

namespace tavocal::simulator {

// What `tavosim run` or `tavosim serve` was asked to do.
struct LiveRequest {
    LiveOptions options;
    Flash flash;                    // of the device's file, else of a new device
    std::vector<std::string> tool;  // the words behind "--": the tool and its arguments
};

// Reads the arguments behind the command, and the device's file if there is one. Throws
// ArgumentError, also for options that say that the device is not the one in its file, and
// OutputError for a file that can't be read. `usualSpeed` is that of a run which names none.
LiveRequest parseLiveArguments(const std::vector<std::string>& arguments, double usualSpeed);

// The options, for the usage text.
std::string liveOptionsUsage();

}  // namespace tavocal::simulator
