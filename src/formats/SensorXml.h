#pragma once

#include <memory>

#include "sensors/CalibrationBlock.h"
#include "sensors/Luid.h"

namespace tavocal {

class SDT;
class Sensor;
class XmlElement;
class XmlNode;

// The "Sensor" element of a calibration file without its data.
std::unique_ptr<XmlElement> makeSensorElement(const LUID& luid);

// Appends "CalibrationData" with the block's head, and no payload yet. REQUIRES: a block with
// a head.
XmlElement& addCalibrationData(XmlElement& sensorElement, const CalibrationBlock& block);

// The sensor of a parsed "Sensor" element, with its block to write. Unless its data is custom, its
// present block is read from the firmware first. Throws CalibrationException, and SmhiException
// from the firmware.
std::shared_ptr<Sensor> loadSensorNode(const XmlNode& node, SDT& firmware);

}  // namespace tavocal
