#pragma once

#include "formats/SensorDataMap.h"

namespace tavocal {

// The samples with each sensor's calibration applied, timestamps kept. Sensors of other kinds than
// inertial and ambient light are left out.
SensorDataMap calibratedSamples(const SensorDataMap& samples);

}  // namespace tavocal
