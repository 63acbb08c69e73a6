#pragma once

#include <memory>
#include <vector>

namespace tavocal {

class Sensor;
struct RunSettings;

// Gathers what the sensors have reported under one root and writes the run's report into the export
// folder; nothing without one. The sensors' parts move into the file's tree, so this is the last
// thing that happens to them. Throws CalibrationException "Failed to write to file".
void writeRunReport(const RunSettings& settings,
                    const std::vector<std::shared_ptr<Sensor>>& physicalSensors);

}  // namespace tavocal
