#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "base/Bytes.h"
#include "simulator/messages/FirmwareCommand.h"
#include "vocabulary/Luid.h"

// The firmware's messages, byte for byte.
namespace tavocal::simulator {

// What follows the header depends on the command; a failure has the header alone. `command` is that
// of the wire, without the flag.
Bytes headerAnswer(std::uint8_t command, FirmwareStatus status);

// REQUIRES: the whole answer is no longer than 4000 bytes.
Bytes blockAnswer(const LUID& luid, std::span<const std::uint8_t> block);

// Sensors of one kind form a group. REQUIRES: at most 255 groups of 255 sensors.
using SensorGroups = std::vector<std::vector<LUID>>;
Bytes sensorListAnswer(const SensorGroups& groups);

Bytes pdtAnswer(std::uint8_t formFactor, std::uint8_t hinge);
Bytes propertyAnswer(std::uint16_t property, std::uint32_t value);

// The answer to a client that has introduced itself.
Bytes greeting();

}  // namespace tavocal::simulator
