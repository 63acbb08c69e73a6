#pragma once

#include "numerics/Matrix.h"

namespace tavocal {

class Sensor;

// What a perfect magnetometer reads in the four positions of the Full flow, one row each, in a
// field of strength `field` that points down by a dip angle of that sine and cosine. Both
// operations throw CalibrationException for a secondary sensor in a device that can't have one.
Matrix expectedField(const Sensor& sensor, double sinDip, double cosDip, double field);

// How the half of the device that holds a secondary sensor is turned against the other one.
Matrix secondaryTurn(const Sensor& sensor);

}  // namespace tavocal
