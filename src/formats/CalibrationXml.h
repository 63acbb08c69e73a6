#pragma once

#include <memory>
#include <string>
#include <vector>

namespace tavocal {

class Sensor;

// Writes the calibration file: one entry for each sensor that has a block. With `useCurrent` the
// blocks are those that were loaded, else those to write where there are any. Throws
// CalibrationException "Failed to write to file", or for a block that can't be told in XML.
void saveCalibrationXml(const std::string& path,
                        const std::vector<std::shared_ptr<Sensor>>& sensors, bool useCurrent);

}  // namespace tavocal
