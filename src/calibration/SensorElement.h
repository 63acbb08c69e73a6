#pragma once

#include <memory>

#include "calibration/CalibrationBlock.h"
#include "vocabulary/Luid.h"

namespace tavocal {

class XmlElement;
class XmlNode;

// The "Sensor" element of a calibration file: whose calibration it is, and the head of the block
// that its "CalibrationData" tells. The payload below that is the matter of its block's format. The
// readers need a tree that was parsed. They throw CalibrationException.

constexpr const wchar_t* kSensorElementName = L"Sensor";
constexpr const wchar_t* kCalibrationDataName = L"CalibrationData";

// A "Sensor" element without its data.
std::unique_ptr<XmlElement> makeSensorElement(const LUID& luid);
LUID readLuid(const XmlNode& sensorNode);

// Appends "CalibrationData" with the block's head, and no payload yet. A block of a FormatId alone
// tells a Version of 0. REQUIRES: a block that isn't empty.
XmlElement& addCalibrationData(XmlElement& sensorElement, const CalibrationBlock& block);

// The head of a "CalibrationData", which is an element if it has one. Both are from 0 to 255.
struct CalibrationHead {
    int formatId;
    int version;
};
CalibrationHead readCalibrationHead(const XmlNode& data);

}  // namespace tavocal
