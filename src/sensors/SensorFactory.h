#pragma once

#include <memory>

#include "vocabulary/Luid.h"

namespace tavocal {

class Sensor;

// The sensor of the right class for the LUID's SensorTypeId.
std::shared_ptr<Sensor> makeSensor(const LUID& luid);

}  // namespace tavocal
