#pragma once

#include <cstdint>

#include "calibration/CalibrationBlock.h"

namespace tavocal {

class XmlElement;

// The payload of a dynamic inertial block. Throws CalibrationException "Invalid calibration data"
// for a block without a white noise.
void writeWhiteNoisePayload(XmlElement& data, const CalibrationBlock& block);

// The white noise of a parsed payload, in the sensor's firmwareUnit. Throws CalibrationException if
// it isn't there or is no number.
std::uint32_t readWhiteNoisePayload(const XmlElement& data);

}  // namespace tavocal
