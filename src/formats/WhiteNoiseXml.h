#pragma once

#include "sensors/CalibrationBlock.h"

namespace tavocal {

class XmlElement;

// The payload of a dynamic inertial block. Throws CalibrationException "Invalid calibration data"
// for a block without a white noise.
void writeWhiteNoisePayload(XmlElement& data, const CalibrationBlock& block);

}  // namespace tavocal
