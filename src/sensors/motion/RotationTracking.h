#pragma once

#include "numerics/Matrix.h"

namespace tavocal {

class InertialSensor;

// Carries the vector that `reference` (an accelerometer or a magnetometer) showed in still stage
// `stage` through the motion from `tBegin` to `tEnd`, milliseconds, by the readings of the
// gyroscope alone, and compares it at some 200 points with what the reference measured there. Both
// are taken with their calibrations applied; `alignment`, 3 by 3, brings gyroscope readings into
// the frame of the reference. The result is the mean distance, in the reference's unit: 0.0 if
// there is nothing to compare.
//
// Throws CalibrationException if the reference has no sample after `tBegin` or no mean of the
// stage.
double rotationTrackingError(const InertialSensor& reference, const InertialSensor& gyroscope,
                             int stage, const Matrix& alignment, double tBegin, double tEnd);

}  // namespace tavocal
