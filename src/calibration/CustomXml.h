#pragma once

#include "calibration/CalibrationBlock.h"

namespace tavocal {

class XmlElement;
class XmlNode;

// The payload of a block that the system doesn't interpret: "OEMCustomData" with the bytes behind
// the head.
void writeCustomPayload(XmlElement& data, const CalibrationBlock& block);

// Appends the bytes of a parsed "OEMCustomData" to `block`, which is a head. Throws
// CalibrationException if they aren't as many as it says.
void readCustomPayload(const XmlNode& custom, CalibrationBlock& block);

}  // namespace tavocal
