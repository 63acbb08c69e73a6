#pragma once

#include "sensors/CalibrationBlock.h"

namespace tavocal {

class XmlElement;

// The payload of a static inertial block: axis mapping, matrix, offset and vendor data. Throws
// CalibrationException "Invalid calibration data" for a block that is too short for its fields.
void writeStaticPayload(XmlElement& data, const CalibrationBlock& block);

}  // namespace tavocal
