#pragma once

#include <vector>

#include "simulator/world/Hand.h"
#include "simulator/world/Movement.h"

namespace tavocal::simulator {

// Where the device is. The world's frame is East-North-Up; the device's frame has X to the right,
// Y up the screen and Z out of the screen.
struct Pose {
    Quaternion attitude;
    Vec3 position;  // metres, of the device's middle
};

// The way of the device through space as a function of time, for any time: movements, rest between
// them, and over all that the hand. Times are in seconds. One thread at a time.
class Trajectory {
  public:
    explicit Trajectory(const Hand& theHand);

    // Where the device rests from the beginning. REQUIRES: no movement yet.
    void startAt(const Quaternion& attitude);
    // REQUIRES: it begins no earlier than the end of the movement before it.
    void append(const Movement& movement);

    // The pose with and without what the hand adds.
    Pose poseAt(double seconds) const;
    Pose steadyPoseAt(double seconds) const;
    // The end of the last movement, 0 before the first.
    double end() const;

    // Of the turning, in the device's frame, in degrees per second.
    Vec3 angularRate(double seconds) const;
    // Of a point of the device, given in its frame in metres; world frame, metres per second
    // squared.
    Vec3 acceleration(double seconds, const Vec3& point) const;
    Vec3 positionOf(double seconds, const Vec3& point) const;

  private:
    struct Leg {
        Movement movement;
        Pose start;
    };

    const Leg* legAt(double seconds) const;

    Hand hand;
    Pose origin;
    std::vector<Leg> legs;
};

}  // namespace tavocal::simulator
