#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "base/Bytes.h"
#include "simulator/messages/FirmwareCommand.h"
#include "vocabulary/Luid.h"

namespace tavocal::simulator {

// A request of a client, read from its bytes. Which fields count depends on the command.
struct FirmwareRequest {
    FirmwareCommand command = FirmwareCommand::Reset;
    LUID luid;
    std::uint16_t property = 0;
    Bytes data;               // a calibration block, or the value of a property
    std::vector<LUID> luids;  // of a session: what it should record; all if empty
};

// Reads a request as strictly as it can be read: reserved bytes are 0, sizes that are told twice
// agree, and nothing lies behind the last field. The result says what is wrong; `request` is only
// of use after Success, but for its command, which is also right after Malformed and
// InvalidParameter. REQUIRES: at least 4 bytes.
FirmwareStatus readRequest(std::span<const std::uint8_t> message, FirmwareRequest& request);

}  // namespace tavocal::simulator
