#pragma once

#include <memory>

namespace tavocal {

class SDT;
class Sensor;
class XmlNode;

// The sensor of a parsed "Sensor" element, with its block to write. Unless its data is custom, its
// present block is read from the firmware first. Throws CalibrationException, and SmhiException
// from the firmware.
std::shared_ptr<Sensor> loadSensorNode(const XmlNode& node, SDT& firmware);

}  // namespace tavocal
