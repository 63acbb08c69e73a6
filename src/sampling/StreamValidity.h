#pragma once

#include <memory>
#include <vector>

#include "formats/SensorDataMap.h"

namespace tavocal {

class Process;

// Checks that every sensor delivered up to the end of the run, measured by the stage indicator.
// Throws CalibrationException with the names of those that did not. Not for a run that has failed
// already.
void checkStreamsLasted(const Process& process, const std::vector<std::shared_ptr<Sensor>>& sensors,
                        const SensorDataMap& samples);

}  // namespace tavocal
