#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace tavocal::simulator {

enum class Flow;

// What an operator can get wrong, in one step of a flow.
enum class Mistake {
    None,
    SkippedTurn,    // the turn isn't made at all
    HalfTurn,       // only half of the turn is made
    WrongTurn,      // the turn is made the other way round
    WrongPosition,  // the tilt goes the other way, or the device is put face down
    MovedDevice,    // the device is knocked over by 25 degrees while it should be still
    CutShort,       // the recording ends soon after the step's position was taken
    Magnet,         // a magnet lies beside the device during the step
    SilentSensor,   // a sensor stops delivering during the step
};

// "none", "skipped-turn", "half-turn", "wrong-turn", "wrong-position", "moved-device", "cut-short",
// "magnet", "silent-sensor".
std::string_view mistakeName(Mistake mistake);
std::optional<Mistake> mistakeFromName(std::string_view name);

// The step, counted from 0, in which the mistake is made if nobody names one. None if the flow has
// no step for it.
std::optional<std::size_t> usualStep(Mistake mistake, Flow flow);

}  // namespace tavocal::simulator
