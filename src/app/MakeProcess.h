#pragma once

#include <memory>

namespace tavocal {

class Process;
struct RunSettings;

// The guided sequence of the run, prepared, which may ask the operator. Throws CalibrationException
// if its configuration file or an answer is wrong.
std::shared_ptr<Process> makeProcess(const RunSettings& settings);

}  // namespace tavocal
