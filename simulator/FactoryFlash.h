#pragma once

#include "simulator/Flash.h"
#include "simulator/LiveOptions.h"

namespace tavocal::simulator {

// What a new device holds for each of its sensors.
Flash factoryFlash(const LiveOptions& options);

}  // namespace tavocal::simulator
