#pragma once

#include "numerics/Vector.h"

namespace tavocal {

// One reading of a sensor.
struct Sample {
    double timestamp = 0.0;  // milliseconds on the run's time base
    Vector values;           // one per axis, in the sensor's samplingUnit
};

}  // namespace tavocal
