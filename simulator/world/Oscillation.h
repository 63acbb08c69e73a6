#pragma once

#include <initializer_list>
#include <vector>

#include "simulator/maths/Vec3.h"

namespace tavocal::simulator {

class Random;

// A smooth trembling in three axes: for each axis a sum of sine waves, with phases of its own.
class Oscillation {
  public:
    // The waves have about the given frequencies in Hz. `amplitudes` says, wave by wave, how large
    // each is, in the unit of the result.
    Oscillation(Random& random, std::initializer_list<double> frequencies,
                const std::vector<double>& amplitudes);

    Vec3 at(double seconds) const;

  private:
    struct Wave {
        double angularFrequency;  // radians per second
        double amplitude;
        Vec3 phase;  // radians, by axis
    };
    std::vector<Wave> waves;
};

}  // namespace tavocal::simulator
