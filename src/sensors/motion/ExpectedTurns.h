#pragma once

#include <optional>

#include "numerics/Matrix.h"
#include "vocabulary/RunTypes.h"

namespace tavocal {

class Sensor;

// The turns that a flow leads the device through.
struct ExpectedTurns {
    double nominalAngle = 0.0;  // degrees, of each turn
    Matrix turns;               // one rotation vector per row, degrees, in the sensor's own frame
};

// Nothing for a flow without measured turns. Throws CalibrationException for a secondary sensor in
// a device that can't have one; the turns of MagAccuracyTest are the same for every sensor.
std::optional<ExpectedTurns> expectedTurns(const Sensor& sensor, FlowType flow);

}  // namespace tavocal
