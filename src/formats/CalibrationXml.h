#pragma once

#include <memory>
#include <string>
#include <vector>

namespace tavocal {

class SDT;
class Sensor;

// Writes the calibration file: one entry for each sensor that has a block. With `useCurrent` the
// blocks are those that were loaded, else those to write where there are any. Throws
// CalibrationException "Failed to write to file", or for a block that can't be told in XML.
void saveCalibrationXml(const std::string& path,
                        const std::vector<std::shared_ptr<Sensor>>& sensors, bool useCurrent);

// The sensors of a calibration file, each with its block to write. Nothing but the first failure
// leaves it if anything in the file is wrong. Throws CalibrationException, what XmlDocument::load
// throws, and SmhiException if the firmware doesn't give the present block of a sensor that needs
// it.
std::vector<std::shared_ptr<Sensor>> loadCalibrationXml(const std::string& path, SDT& firmware);

}  // namespace tavocal
