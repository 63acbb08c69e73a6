#include "simulator/messages/FirmwareCommand.h"

#include <array>

#include "simulator/base/Names.h"

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
    return valueNamed<FirmwareCommand>(kNames, name);
}

}  // namespace tavocal::simulator
