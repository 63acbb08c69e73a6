#pragma once

#include <string>

#include "simulator/hub/Flash.h"
#include "simulator/live/LiveOptions.h"

namespace tavocal::simulator {

// The file that keeps a device between runs: lines of "key=value" with what the device is, the true
// errors of its sensors, which are there to be read only, and its flash.
std::string deviceFileText(const LiveOptions& options, const Flash& flash);

// The lines of the above that say what the device is. Two devices are the same if theirs are.
std::string deviceIdentityText(const LiveOptions& options);

// Sets what the file holds. Throws OutputError with the line that can't be read, or whose block
// does not fit its sensor.
void readDeviceFile(const std::string& text, LiveOptions& options, Flash& flash);

}  // namespace tavocal::simulator
