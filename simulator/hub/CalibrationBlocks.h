#pragma once

#include "base/Bytes.h"
#include "simulator/device/SensorModel.h"
#include "vocabulary/Luid.h"

// The blocks that the firmware keeps for its sensors.
namespace tavocal::simulator {

// The first byte of a block is its format. From this one on it is a vendor's own, which nobody
// reads.
constexpr std::uint8_t kFirstVendorFormat = 128;

// The firmware stores such a block for such a sensor: a vendor's own format, or the format and size
// that its kind of sensor has.
bool fitsSensor(const LUID& luid, const Bytes& block);

// No offset, no scale, no other mounting; for a light sensor a scale of 1.
Bytes neutralBlock(const LUID& luid);

// The block of a static motion sensor that undoes these errors, as well as its numbers allow.
Bytes blockFor(SensorKind kind, const SensorTruth& truth);

// The state that a dynamic sensor has after some use.
Bytes dynamicBlock(const LUID& luid);

// A light sensor's block that multiplies by this. REQUIRES: from 0 to 655.
Bytes lightBlock(double multiplier);

}  // namespace tavocal::simulator
