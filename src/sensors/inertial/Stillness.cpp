#include "sensors/inertial/Stillness.h"

#include <algorithm>

namespace tavocal {

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
    constexpr double kStep = 100.0;
    const IndexWindow base = findBufferRange(samples, t, window);
    if (base.last - base.first < 2) {
        return 0.0;
    }
    const double baseDeviation = maxStd(samples, base);
    const double baseRange = maxRange(samples, base);
    const double newest = samples.back().timestamp;
    int n = 1;
    while (newest > t + kStep * n) {
        const IndexWindow later = findBufferRange(samples, t + kStep * n, window);
        if (maxRange(samples, later) > 1.5 * baseRange ||
            maxStd(samples, later) > 1.5 * baseDeviation) {
            break;
        }
        ++n;
    }
    return kStep * (n - 1);
}

}  // namespace tavocal
