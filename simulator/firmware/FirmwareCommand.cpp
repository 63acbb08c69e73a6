#include "simulator/firmware/FirmwareCommand.h"

#include <array>

namespace tavocal::simulator {

namespace {

constexpr std::array<std::string_view, 9> kNames = {
    "reset",        "enumerate",    "get-calibration", "pdt", "set-calibration",
    "get-property", "set-property", "start",           "stop"};

}  // namespace

std::string_view commandName(FirmwareCommand command) {
    return kNames[static_cast<std::size_t>(command)];
}

std::optional<FirmwareCommand> commandFromName(std::string_view name) {
    for (std::size_t i = 0; i < kNames.size(); ++i) {
        if (kNames[i] == name) {
            return static_cast<FirmwareCommand>(i);
        }
    }
    return std::nullopt;
}

}  // namespace tavocal::simulator
