#pragma once

#include <string_view>

#include "simulator/maths/Random.h"

namespace tavocal::simulator {

// When a sensor takes its samples: at a steady rate, with a phase of its own and a little jitter.
class SampleClock {
  public:
    // The first sample is due after `phase` seconds. Jitter is cut off before two samples could
    // change places, and before one could lie ahead of time 0. REQUIRES: rateHz above 0.
    SampleClock(double rateHz, double jitterSeconds, double phase, std::uint64_t seed,
                std::string_view stream);

    // Seconds of the sample that comes next.
    double next() const { return nextTime; }
    void step();

  private:
    double jitter();

    double period;
    double jitterSize;
    double phaseTime;
    double count = 0.0;
    double nextTime;
    Random random;
};

}  // namespace tavocal::simulator
