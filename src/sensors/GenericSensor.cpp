#include "sensors/GenericSensor.h"

#include "base/Failures.h"

namespace tavocal {

void GenericSensor::validateCalibrationData(const CalibrationBlock& block) const {
    if (block.empty()) {
        throw CalibrationException("Invalid calibration data size");
    }
    if (block[0] < kFirstVendorFormat) {
        validateSize(block);
    }
}

}  // namespace tavocal
