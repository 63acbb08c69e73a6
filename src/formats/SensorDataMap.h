#pragma once

#include <map>
#include <memory>
#include <vector>

#include "numerics/Sample.h"

namespace tavocal {

class Sensor;

// What a run sampled, by sensor, in the order of time.
using SensorDataMap = std::map<std::shared_ptr<Sensor>, std::vector<Sample>>;

}  // namespace tavocal
