#include "sensors/inertial/Stillness.h"

#include <algorithm>
#include <cmath>

namespace tavocal {

namespace {

constexpr double kStep = 100.0;  // milliseconds
// Up to here a step more is another number.
constexpr double kMostSteps = 9007199254740992.0;

// A step, perhaps not the last one, that ends before `time` however it is rounded.
double stepBefore(double time) {
    return std::floor(time / kStep) - 1.0;
}

}  // namespace

Stillness::Stillness(const std::vector<Sample>& samples, const StillnessLimits& limits)
    : StillnessLimits(limits), watchedSamples(samples), ranges(samples), newest(samples) {}

IndexWindow Stillness::lastWindow() {
    return ranges.find(watchedSamples.back().timestamp - stillWindow, stillWindow);
}

bool Stillness::isStill(bool firstStage) {
    if (watchedSamples.empty()) {
        return false;
    }
    newest.measure(lastWindow());
    const double deviation = newest.maxStd();
    const double range = newest.maxRange();
    if (firstStage) {
        stillRangeLimit = std::min(stillRangeLimit, std::max(1.5 * range, stillFloor));
        stillStdLimit = std::min(stillStdLimit, std::max(1.5 * deviation, stillFloor));
    }
    return deviation <= stillStdLimit && range <= stillRangeLimit;
}

// A window that lies in a gap stays the same over all the steps up to its end, so that a gap of any
// length, as a clock that jumps leaves behind, costs a few steps.
double Stillness::stillExtension(double t) {
    const IndexWindow first = ranges.find(t, stillWindow);
    if (first.last - first.first < 2) {
        return 0.0;
    }
    WindowSpread base(watchedSamples);
    WindowSpread later(watchedSamples);
    base.measure(first);
    double n = 1.0;
    while (n < kMostSteps && watchedSamples.back().timestamp > t + kStep * n) {
        const IndexWindow window = ranges.find(t + kStep * n, stillWindow);
        later.measure(window);
        if (later.maxRange() > 1.5 * base.maxRange() || later.maxStd() > 1.5 * base.maxStd()) {
            break;
        }
        const double change = std::min(ranges.heldBelow(window.first) - t,
                                       ranges.heldBelow(window.last) - stillWindow - t);
        n = std::min(std::max(n + 1.0, stepBefore(change)), kMostSteps);
    }
    return kStep * (n - 1.0);
}

}  // namespace tavocal
