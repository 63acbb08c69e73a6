#pragma once

#include "numerics/Matrix.h"
#include "numerics/Vector.h"
#include "sensors/model/Sensor.h"
#include "vocabulary/Unit.h"

namespace tavocal {

// What undoes the calibration that the firmware applies to every reading. The firmware gives
//     y = (S * A) * (x - O)
// for the raw reading x, with scale matrix S, axis mapping A and offset O of its block, so
//     x = reverseMatrix * (y - reverseOffset).
struct FirmwareReversal {
    Matrix reverseMatrix;  // inverse(A) * inverse(S); 0 by 0 without a block
    Vector reverseOffset;  // -((S * A) * O), in samplingUnit
};

// The reversal of a static block, with its steps in the report. Throws CalibrationException for a
// vendor's own format, a block that is too short, or one that can't be inverted.
FirmwareReversal reversalOf(const CalibrationBlock& block, Unit firmwareUnit, Unit samplingUnit,
                            SensorReport& report);

}  // namespace tavocal
