#pragma once

#include <memory>
#include <vector>

namespace tavocal {

class Process;
class Sensor;

// Offers the sensors of a run to its sequence as stage indicators, in their order, and hands it the
// ambient light sensors. False if the sequence still lacks the accelerometer that it finds its
// stages by. Throws CalibrationException if it lacks another sensor.
bool offerIndicators(Process& process, const std::vector<std::shared_ptr<Sensor>>& sensors);

// The last stage indicator, never null. Throws CalibrationException if there is none.
std::shared_ptr<Sensor> lastIndicator(const Process& process,
                                      const std::vector<std::shared_ptr<Sensor>>& sensors);

}  // namespace tavocal
