#pragma once

#include "sensors/CalibrationBlock.h"

namespace tavocal {

class XmlElement;

// The payload of a block that the system doesn't interpret: "OEMCustomData" with the bytes behind
// the head. Throws CalibrationException "Invalid calibration data" for a block without a head.
void writeCustomPayload(XmlElement& data, const CalibrationBlock& block);

}  // namespace tavocal
