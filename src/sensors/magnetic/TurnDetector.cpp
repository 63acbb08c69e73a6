#include "sensors/magnetic/TurnDetector.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "numerics/Statistics.h"

namespace tavocal {

namespace {

constexpr int kAxes = 3;
constexpr int kHalfWidth = 5;  // a median is taken of a sample and as many on each side

}  // namespace

double TurnDetector::range(const std::vector<Sample>& samples, double since) {
    if (since != startTime) {
        startTime = since;
        seen = 0;
        restart(0);
    }
    // As long as no sample is later than `since`, the first index moves on with the newest one.
    for (; seen < samples.size(); ++seen) {
        if (samples[seen].timestamp <= since) {
            restart(static_cast<int>(seen));
        }
    }
    for (; next + kHalfWidth < static_cast<int>(samples.size()); ++next) {
        add(medianOfAxes(samples, next - kHalfWidth, next + kHalfWidth));
    }
    double swing = 0.0;
    for (int axis = 0; axis < kAxes; ++axis) {
        swing = std::max(swing, largest[axis] - smallest[axis]);
    }
    return swing;
}

void TurnDetector::restart(int first) {
    constexpr double kNone = std::numeric_limits<double>::infinity();
    next = first + kHalfWidth;
    smallest = {kNone, kNone, kNone};
    largest = {-kNone, -kNone, -kNone};
}

void TurnDetector::add(const Vector& medians) {
    for (int axis = 0; axis < std::min(kAxes, medians.size()); ++axis) {
        if (std::isfinite(medians[axis])) {
            smallest[axis] = std::min(smallest[axis], medians[axis]);
            largest[axis] = std::max(largest[axis], medians[axis]);
        }
    }
}

}  // namespace tavocal
