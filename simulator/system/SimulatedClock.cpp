#include "simulator/system/SimulatedClock.h"

#include <algorithm>

namespace tavocal::simulator {

namespace {

constexpr double kLargestStep = 0.2;
constexpr double kUsualStep = 0.05;
constexpr double kLongestTick = 0.01;
constexpr double kShortestTick = 0.0005;

}  // namespace

void SimulatedClock::tick(double realSeconds) {
    if (started) {
        time += std::clamp((realSeconds - lastReal) * speed, 0.0, kLargestStep);
    }
    hold(realSeconds);
}

void SimulatedClock::hold(double realSeconds) {
    lastReal = realSeconds;
    started = true;
}

double SimulatedClock::tickSeconds() const {
    return std::clamp(kUsualStep / speed, kShortestTick, kLongestTick);
}

}  // namespace tavocal::simulator
