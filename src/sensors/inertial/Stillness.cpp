#include "sensors/inertial/Stillness.h"

#include <algorithm>
#include <cmath>

namespace tavocal {

namespace {

constexpr double kStep = 100.0;  // milliseconds
// Up to here a step more is another number.
constexpr double kMostSteps = 9007199254740992.0;

// A step, perhaps not the last one, that ends before `time` however it is rounded. A window that
// lies in a gap stays the same over all the steps up to it, so that a gap of any length, as a clock
// that jumps leaves behind, costs a few steps.
double lastStepBefore(double time) {
    return std::floor(time / kStep) - 1.0;
}

}  // namespace

IndexWindow lastWindow(const std::vector<Sample>& samples, double window) {
    return findBufferRange(samples, samples.back().timestamp - window, window);
}

bool isStill(const std::vector<Sample>& samples, StillnessLimits& limits, bool firstStage) {
    if (samples.empty()) {
        return false;
    }
    const IndexWindow window = lastWindow(samples, limits.stillWindow);
    const double deviation = maxStd(samples, window);
    const double range = maxRange(samples, window);
    if (firstStage) {
        limits.stillRangeLimit =
            std::min(limits.stillRangeLimit, std::max(1.5 * range, limits.stillFloor));
        limits.stillStdLimit =
            std::min(limits.stillStdLimit, std::max(1.5 * deviation, limits.stillFloor));
    }
    return deviation <= limits.stillStdLimit && range <= limits.stillRangeLimit;
}

double stillExtension(const std::vector<Sample>& samples, double window, double t) {
    const BufferRanges ranges(samples);
    const IndexWindow base = ranges.find(t, window);
    if (base.last - base.first < 2) {
        return 0.0;
    }
    const double baseDeviation = maxStd(samples, base);
    const double baseRange = maxRange(samples, base);
    const double newest = samples.back().timestamp;
    double n = 1.0;
    while (n < kMostSteps && newest > t + kStep * n) {
        const IndexWindow later = ranges.find(t + kStep * n, window);
        if (maxRange(samples, later) > 1.5 * baseRange ||
            maxStd(samples, later) > 1.5 * baseDeviation) {
            break;
        }
        const double change =
            std::min(ranges.heldBelow(later.first) - t, ranges.heldBelow(later.last) - window - t);
        n = std::min(std::max(n + 1.0, lastStepBefore(change)), kMostSteps);
    }
    return kStep * (n - 1.0);
}

}  // namespace tavocal
