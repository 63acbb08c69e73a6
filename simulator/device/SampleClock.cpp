#include "simulator/device/SampleClock.h"

#include <algorithm>

namespace tavocal::simulator {

SampleClock::SampleClock(double rateHz, double jitterSeconds, double phase, std::uint64_t seed,
                         std::string_view stream)
    : period(1.0 / rateHz),
      jitterSize(jitterSeconds),
      phaseTime(phase),
      nextTime(phase),
      random(seed, stream) {}

void SampleClock::step() {
    count += 1.0;
    nextTime = phaseTime + count * period + jitter();
}

double SampleClock::jitter() {
    const double limit = 0.4 * period;
    return std::clamp(jitterSize * random.normal(), -limit, limit);
}

}  // namespace tavocal::simulator
