#pragma once

#include <memory>

#include "sensors/CalibrationBlock.h"
#include "sensors/Luid.h"

namespace tavocal {

class XmlElement;

// The "Sensor" element of a calibration file without its data.
std::unique_ptr<XmlElement> makeSensorElement(const LUID& luid);

// Appends "CalibrationData" with the block's head, and no payload yet. REQUIRES: a block with
// a head.
XmlElement& addCalibrationData(XmlElement& sensorElement, const CalibrationBlock& block);

}  // namespace tavocal
