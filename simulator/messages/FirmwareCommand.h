#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tavocal::simulator {

// What the firmware can be asked for. Several of these share a command of the wire.
enum class FirmwareCommand {
    Reset,
    Enumerate,
    GetCalibration,
    Pdt,
    SetCalibration,
    GetProperty,
    SetProperty,
    Start,
    Stop,
};

// "reset", "enumerate", "get-calibration", "pdt", "set-calibration", "get-property",
// "set-property", "start", "stop".
std::string_view commandName(FirmwareCommand command);
std::optional<FirmwareCommand> commandFromName(std::string_view name);

// The status of an answer.
enum class FirmwareStatus : std::uint8_t {
    Success = 0,
    Unsupported = 1,       // no such command
    Malformed = 2,         // a field, or the length, is not what it has to be
    UnknownSensor = 3,     // the LUID is in no list
    WrongState = 4,        // a session where none may be, or none where one must be
    InvalidParameter = 5,  // a value that the sensor can't have
};

}  // namespace tavocal::simulator
