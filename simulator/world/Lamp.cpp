#include "simulator/world/Lamp.h"

#include <algorithm>
#include <cmath>

#include "simulator/maths/Vec3.h"

namespace tavocal::simulator {

namespace {

constexpr double kSlowShare = 0.02;
constexpr double kSettleSeconds = 0.5;
// Twice the mains frequency, which is never exactly what it should be.
constexpr double kFlickerHz = 99.7;

// The share of a change that is done `seconds` after its begin.
double doneAfter(double seconds, double ramp) {
    if (seconds <= 0.0) {
        return 0.0;
    }
    const double t = std::min(seconds / ramp, 1.0);
    const double fast = t * t * t * (10.0 + t * (-15.0 + t * 6.0));
    return (1.0 - kSlowShare) * fast + kSlowShare * (1.0 - std::exp(-seconds / kSettleSeconds));
}

}  // namespace

Lamp::Lamp(double firstLevel, double rampTime) : rampSeconds(rampTime) {
    changes.push_back({0.0, firstLevel, firstLevel});
}

void Lamp::changeTo(double level, double seconds) {
    changes.push_back({seconds, steadyLuxAt(seconds), level});
}

void Lamp::setFlicker(double lux, double seconds) {
    flickers.push_back({seconds, lux});
}

double Lamp::luxAt(double seconds) const {
    return std::max(steadyLuxAt(seconds) + flickerAt(seconds), 0.0);
}

double Lamp::steadyLuxAt(double seconds) const {
    auto change = changes.end() - 1;
    while (change != changes.begin() && change->begin > seconds) {
        --change;
    }
    return change->from +
           (change->to - change->from) * doneAfter(seconds - change->begin, rampSeconds);
}

double Lamp::flickerAt(double seconds) const {
    double lux = 0.0;
    for (const Flicker& flicker : flickers) {
        lux = flicker.begin <= seconds ? flicker.lux : lux;
    }
    return lux * std::sin(2.0 * kPi * kFlickerHz * seconds);
}

}  // namespace tavocal::simulator
