#include "simulator/messages/FirmwareFault.h"

#include <array>

namespace tavocal::simulator {

namespace {

using Kind = FirmwareFaultKind;

struct Entry {
    Kind kind;
    std::string_view name;
    std::string_view meaning;
};

// Names to which the command's is added.
constexpr std::array<Entry, 8> kAnswerFaults = {{
    {Kind::Refused, "refused-", "the command fails with status 1"},
    {Kind::Invalid, "invalid-", "the command fails with status 5"},
    {Kind::Short, "short-", "its answer lacks a byte"},
    {Kind::Empty, "empty-", "its answer is shorter than a header"},
    {Kind::Wrong, "wrong-", "its answer is one to another command"},
    {Kind::Unflagged, "unflagged-", "its answer says that it is none"},
    {Kind::Silent, "silent-", "it has no answer"},
    {Kind::HangUp, "hang-up-", "the connection is closed instead of answering"},
}};

constexpr std::array<Entry, 16> kFaults = {{
    {Kind::None, "none", "nothing is wrong"},
    {Kind::OverlongBlock, "overlong-block", "a block reaches past its message"},
    {Kind::OverlongList, "overlong-list", "the sensor list reaches past its message"},
    {Kind::NoGreeting, "no-greeting", "no client is let in"},
    {Kind::SilentFirmware, "silent-firmware", "no request is answered"},
    {Kind::SilentSensor, "silent-sensor", "one sensor delivers nothing"},
    {Kind::SensorStops, "sensor-stops", "one sensor stops after a while"},
    {Kind::StreamStops, "stream-stops", "all sensors stop after a while"},
    {Kind::FirmwareStops, "firmware-stops", "nothing comes any more after a while"},
    {Kind::LostConnection, "lost-connection", "the session's connection ends after a while"},
    {Kind::Leftovers, "leftovers", "a crashed run has left a session behind"},
    {Kind::EndlessLeftovers, "endless-leftovers", "and its buffers never end"},
    {Kind::EarlyBuffer, "early-buffer", "a buffer comes ahead of the answer to the start"},
    {Kind::DamagedRecords, "damaged-records", "some buffers end in a broken record"},
    {Kind::OddRecords, "odd-records", "records have odd sizes or too few values"},
    {Kind::ForeignRecords, "foreign-records", "a sensor that nobody knows publishes too"},
}};

std::optional<FirmwareFault> answerFault(std::string_view name) {
    for (const Entry& entry : kAnswerFaults) {
        const auto command = name.starts_with(entry.name)
                                 ? commandFromName(name.substr(entry.name.size()))
                                 : std::nullopt;
        if (command) {
            return FirmwareFault{entry.kind, *command};
        }
    }
    return std::nullopt;
}

std::string usageLine(std::string_view name, std::string_view meaning) {
    constexpr std::size_t kWidth = 27;
    std::string left = "  " + std::string(name);
    left.resize(kWidth, ' ');
    return left + std::string(meaning) + "\n";
}

}  // namespace

std::optional<FirmwareFault> firmwareFaultFromName(std::string_view name) {
    for (const Entry& entry : kFaults) {
        if (entry.name == name) {
            return FirmwareFault{entry.kind, {}};
        }
    }
    return answerFault(name);
}

std::string firmwareFaultUsage() {
    std::string text;
    for (const Entry& entry : kFaults) {
        text += usageLine(entry.name, entry.meaning);
    }
    for (const Entry& entry : kAnswerFaults) {
        text += usageLine(std::string(entry.name) + "COMMAND", entry.meaning);
    }
    text += "  COMMAND is one of:";
    for (int i = 0; i <= static_cast<int>(FirmwareCommand::Stop); ++i) {
        text += " " + std::string(commandName(static_cast<FirmwareCommand>(i)));
    }
    return text + "\n";
}

}  // namespace tavocal::simulator
