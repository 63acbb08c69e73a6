#include "simulator/world/Hand.h"

#include <cmath>

#include "simulator/maths/Random.h"

namespace tavocal::simulator {

namespace {

constexpr double kGravity = 9.80665;  // metres per second squared

// The trembling of a hand lies between about 4 and 12 Hz. The waves are more than 1 Hz apart, so
// that their beats even out within a second.
constexpr std::initializer_list<double> kTremorHz = {4.3, 5.9, 7.4, 9.2, 11.3};
constexpr std::initializer_list<double> kWobbleHz = {0.45, 0.8, 1.3};

// Amplitudes that give each wave the same share of `rms`, which is measured on the result's
// derivative of the given order.
std::vector<double> equalShares(double rms, int order) {
    std::vector<double> amplitudes;
    const double share = rms * std::sqrt(2.0 / static_cast<double>(kTremorHz.size()));
    for (const double frequency : kTremorHz) {
        amplitudes.push_back(share / std::pow(2.0 * kPi * frequency, order));
    }
    return amplitudes;
}

std::vector<double> wobbleAmplitudes(double degrees) {
    const double radians = degrees * kRadiansPerDegree;
    return {0.6 * radians, 0.3 * radians, 0.1 * radians};
}

}  // namespace

Hand::Hand(const HandOptions& options, Random& random)
    : turn(random, kTremorHz, equalShares(options.tremorDps * kRadiansPerDegree, 1)),
      travel(random, kTremorHz, equalShares(options.tremorG * kGravity, 2)),
      sway(random, kWobbleHz, wobbleAmplitudes(options.wobbleDegrees)) {}

Vec3 Hand::tremorTurn(double seconds) const {
    return turn.at(seconds);
}

Vec3 Hand::tremorTravel(double seconds) const {
    return travel.at(seconds);
}

Vec3 Hand::wobble(double seconds) const {
    return sway.at(seconds);
}

}  // namespace tavocal::simulator
