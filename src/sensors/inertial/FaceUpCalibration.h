#pragma once

namespace tavocal {

class InertialSensor;

// The whole of a Minimal calibration, from the sums of a face-up run: it corrects only the offset
// of the firmware's block and keeps its scale and axis mapping. Leaves the block in
// calibrationToWrite. Throws CalibrationException if the result is no good, MathException if the
// firmware's calibration is unknown.
void faceUpCalibrate(InertialSensor& sensor);

}  // namespace tavocal
