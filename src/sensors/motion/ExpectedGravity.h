#pragma once

#include "numerics/Matrix.h"
#include "vocabulary/RunTypes.h"

namespace tavocal {

class Sensor;

// What a perfect accelerometer reads in the four positions of a flow, one row each: `gravity` along
// one axis. REQUIRES: a flow of positions, not Minimal. Throws CalibrationException for a secondary
// sensor in a device that can't have one.
Matrix expectedGravity(const Sensor& sensor, FlowType flow, double gravity);

}  // namespace tavocal
