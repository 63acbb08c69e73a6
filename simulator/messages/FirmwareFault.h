#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "simulator/messages/FirmwareCommand.h"

namespace tavocal::simulator {

// What can be wrong with the firmware or with the way to it.
enum class FirmwareFaultKind {
    None,

    // Of the answers to one command.
    Refused,    // status 1
    Invalid,    // status 5
    Short,      // one byte of what has to be there is missing
    Empty,      // fewer bytes than a header has
    Wrong,      // it answers another command
    Unflagged,  // it is no answer
    Silent,     // there is none
    HangUp,     // the connection is closed instead

    // Of the answers to no single command.
    OverlongBlock,   // a block is said to be longer than its message
    OverlongList,    // a group is said to have more sensors than there are
    NoGreeting,      // who introduces himself is hung up on
    SilentFirmware,  // nothing is answered but introductions

    // Of the record session.
    SilentSensor,      // one sensor delivers nothing
    SensorStops,       // one sensor stops after a while
    StreamStops,       // all sensors stop after a while; requests are still answered
    FirmwareStops,     // after a while nothing is published and nothing answered
    LostConnection,    // the session's connection is closed after a while
    Leftovers,         // a run that crashed has left a session behind
    EndlessLeftovers,  // and the firmware can't stop publishing it
    EarlyBuffer,       // something is published ahead of the answer to the start
    DamagedRecords,    // some buffers end in a record that is too short, or too long
    OddRecords,        // records have bytes behind their values, and some have too few values
    ForeignRecords,    // a sensor publishes that nobody knows
};

struct FirmwareFault {
    FirmwareFaultKind kind = FirmwareFaultKind::None;
    FirmwareCommand command = FirmwareCommand::Reset;  // whose answers are wrong

    bool is(FirmwareFaultKind other) const { return kind == other; }
};

// "none"; "refused-enumerate" and so on for the faults of answers; "silent-sensor" and so on.
std::optional<FirmwareFault> firmwareFaultFromName(std::string_view name);

// The names with their meanings, for the usage text.
std::string firmwareFaultUsage();

}  // namespace tavocal::simulator
