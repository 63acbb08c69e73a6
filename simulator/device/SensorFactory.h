#pragma once

#include <vector>

#include "simulator/device/SensorModel.h"

namespace tavocal::simulator {

struct DeviceOptions;

// The sensors of a device, in the order of its letters, each primary one before its secondary one.
// Their errors depend on the seed and the kind alone, not on what else the device has.
std::vector<SensorModel> makeSensors(const DeviceOptions& options);

}  // namespace tavocal::simulator
