#pragma once

#include "simulator/maths/Quaternion.h"

namespace tavocal::simulator {

// One movement of the device from rest to rest, which begins and ends without a jerk: rate and
// acceleration are zero at both ends, as in the minimum-jerk profile of Flash and Hogan (1985).
struct Movement {
    double begin = 0.0;     // seconds
    double duration = 1.0;  // seconds, above 0
    Vec3 turn;              // rotation vector in radians, device frame; may be longer than a turn
    Vec3 correction;        // turned along with it, so that the movement ends where it should
    Vec3 travel;            // metres, world frame

    double end() const { return begin + duration; }

    // The part of the way that is done: 0 before the begin, 1 after the end.
    double progress(double seconds) const;
    // How lively the movement is: 1 in its middle, 0 outside, with two smooth derivatives.
    double liveliness(double seconds) const;
    // From the attitude of the begin to the attitude at `seconds`.
    Quaternion rotation(double seconds) const;
};

}  // namespace tavocal::simulator
