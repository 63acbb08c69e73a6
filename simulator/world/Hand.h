#pragma once

#include "simulator/world/Oscillation.h"

namespace tavocal::simulator {

class Random;

// How steady the hand is that holds the device.
struct HandOptions {
    double tremorDps = 0.05;      // root mean square of the rate of the trembling, per axis
    double tremorG = 0.0003;      // the same of its acceleration, per axis
    double wobbleDegrees = 0.15;  // size of the sway of a turn's axis
};

// What a hand adds to the movement that it is meant to make. The trembling goes on all the time
// and keeps its strength, so that one still second is as restless as the next; the wobble belongs
// to movements.
class Hand {
  public:
    Hand(const HandOptions& options, Random& random);

    // A small rotation vector in radians, in the device's frame.
    Vec3 tremorTurn(double seconds) const;
    // Metres, in the world's frame.
    Vec3 tremorTravel(double seconds) const;
    // A small rotation vector in radians, in the device's frame, before it is faded in and out.
    Vec3 wobble(double seconds) const;

  private:
    Oscillation turn;
    Oscillation travel;
    Oscillation sway;
};

}  // namespace tavocal::simulator
