#pragma once

#include "simulator/device/DeviceOptions.h"
#include "simulator/messages/FirmwareFault.h"

namespace tavocal::simulator {

// What the firmware is and what is wrong with it.
struct FirmwareOptions {
    DeviceOptions device;
    FirmwareFault fault;
    double faultAfter = 3.0;  // seconds of the session, where it takes a while
    SensorKind faultSensor = SensorKind::Gyroscope;  // which one is silent or stops
};

}  // namespace tavocal::simulator
