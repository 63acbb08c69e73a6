#pragma once

#include "simulator/device/DeviceOptions.h"
#include "simulator/hub/Flash.h"

namespace tavocal::simulator {

// What the flash of a new device holds for its static motion sensors.
enum class FactoryBlocks {
    Neutral,  // a block that changes nothing
    Exact,    // the one that undoes the sensor's errors
    Other,    // that of a sensor with other errors
    Missing,  // none
};

// What a new device holds for each of its sensors.
Flash factoryFlash(DeviceOptions device, FactoryBlocks blocks);

}  // namespace tavocal::simulator
