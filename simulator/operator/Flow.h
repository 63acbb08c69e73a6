#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "simulator/maths/Vec3.h"

namespace tavocal::simulator {

// The sequences that an operator can be led through.
enum class Flow { Full, AccelerometerOnly, FourSteps, MagAccuracy, Minimal, MagTest };

// One step of a flow: the turn that leads from the position of the step before to this step's, or
// a walk on which the device keeps its attitude.
struct FlowStep {
    Vec3 axis;           // in the device's frame, unit length; zero where nothing is turned
    double degrees;      // counter-clockwise positive
    bool walks = false;  // around a rectangle, and not quite back to its beginning
};

// The steps in order. Before the first one Z points up and Y to the north.
std::span<const FlowStep> flowSteps(Flow flow);

// "full", "accelerometer", "foursteps", "magaccuracy", "minimal", "magtest".
std::string_view flowName(Flow flow);
std::optional<Flow> flowFromName(std::string_view name);

}  // namespace tavocal::simulator
