#pragma once

#include "simulator/firmware/Flash.h"
#include "simulator/live/LiveOptions.h"

namespace tavocal::simulator {

// What a new device holds for each of its sensors.
Flash factoryFlash(const LiveOptions& options);

}  // namespace tavocal::simulator
