#pragma once

#include "calibration/CalibrationBlock.h"

namespace tavocal {

class XmlElement;

// The payload of a static inertial block: axis mapping, matrix, offset and vendor data, whose
// "DataLength" is the one that the block tells, while its text has all the bytes that are there.
// Throws CalibrationException "Invalid calibration data" for a block that is too short for its
// fields.
void writeStaticPayload(XmlElement& data, const CalibrationBlock& block);

// Replaces the fields of `block` that the parsed payload holds; vendor data is appended. Of a group
// that ends early, the elements that are missing keep what they were. Throws CalibrationException.
// REQUIRES: a static block without vendor data.
void readStaticPayload(const XmlElement& data, CalibrationBlock& block);

}  // namespace tavocal
