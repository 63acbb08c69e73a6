#pragma once

#include "calibration/CalibrationBlock.h"

namespace tavocal {

class InertialBlockSensor;
class XmlElement;

// The payload of an inertial sensor, by its Flags: static, dynamic, or else custom. Throws
// CalibrationException for a block of another format than the sensor's, or one that is too short.
void writeInertialPayload(XmlElement& data, const CalibrationBlock& block,
                          const InertialBlockSensor& sensor);

// Reads a parsed payload into calibrationToWrite. The sensor's present block must have been loaded
// if it is dynamic. Throws CalibrationException.
void readInertialPayload(const XmlElement& data, int formatId, int version,
                         InertialBlockSensor& sensor);

}  // namespace tavocal
