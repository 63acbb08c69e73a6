#pragma once

#include <string_view>

#include "simulator/maths/Mat3.h"

namespace tavocal::simulator {

// The matrix that takes a vector of the device's frame to the frame of its secondary sensors, which
// sit in the other half of the device, or on its other side. For a form factor that has no
// secondary sensors it is that of "2IN1" with the hinge at the bottom.
Mat3 secondaryFrame(std::string_view formFactor, std::string_view hinge);

}  // namespace tavocal::simulator
