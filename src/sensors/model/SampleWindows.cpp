#include "sensors/model/SampleWindows.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/Failures.h"

namespace tavocal {

namespace {

constexpr int kAxes = 3;

int sizeOf(const std::vector<Sample>& samples) {
    return static_cast<int>(samples.size());
}

void requireInside(const std::vector<Sample>& samples, IndexWindow window) {
    if (window.first < 0 || window.first >= sizeOf(samples) || window.last >= sizeOf(samples)) {
        throw CalibrationException("invalid buffer range");
    }
}

double axisStd(const std::vector<Sample>& samples, IndexWindow window, int axis) {
    double sum = 0.0;
    double squares = 0.0;
    for (int i = window.first; i <= window.last; ++i) {
        const double value = samples[static_cast<std::size_t>(i)].values[axis];
        sum += value;
        squares += value * value;
    }
    const double count = window.last - window.first + 1;
    const double mean = sum / count;
    return std::sqrt(squares / count - mean * mean);
}

// -1 if all samples are later.
int newestNotAbove(const std::vector<Sample>& samples, double time) {
    const auto found = std::find_if(samples.rbegin(), samples.rend(), [time](const Sample& sample) {
        return sample.timestamp <= time;
    });
    return static_cast<int>(samples.rend() - found) - 1;
}

IndexWindow foundRange(int first, int last) {
    if (last < 0) {
        throw CalibrationException("Failed to find buffer range. Inner error");
    }
    return {std::max(first, 0), last};
}

}  // namespace

int firstIndexAbove(const std::vector<Sample>& samples, double time) {
    const auto found = std::find_if(samples.begin(), samples.end(), [time](const Sample& sample) {
        return sample.timestamp > time;
    });
    return static_cast<int>(found - samples.begin());
}

double intervalBefore(const std::vector<Sample>& samples, int index) {
    if (index <= 0 || index >= sizeOf(samples)) {
        return 0.0;
    }
    const auto at = static_cast<std::size_t>(index);
    return samples[at].timestamp - samples[at - 1].timestamp;
}

IndexWindow findBufferRange(const std::vector<Sample>& samples, double t, double window) {
    return foundRange(newestNotAbove(samples, t), newestNotAbove(samples, t + window));
}

BufferRanges::BufferRanges(const std::vector<Sample>& samples) : earliestFrom(samples.size()) {
    double earliest = std::numeric_limits<double>::infinity();
    for (std::size_t i = samples.size(); i-- > 0;) {
        earliest = std::min(earliest, samples[i].timestamp);
        earliestFrom[i] = earliest;
    }
}

IndexWindow BufferRanges::find(double t, double window) const {
    return foundRange(newestNotAbove(t), newestNotAbove(t + window));
}

double BufferRanges::heldBelow(int index) const {
    const auto next = static_cast<std::size_t>(index) + 1;
    return next < earliestFrom.size() ? earliestFrom[next]
                                      : std::numeric_limits<double>::infinity();
}

int BufferRanges::newestNotAbove(double time) const {
    const auto found = std::upper_bound(earliestFrom.begin(), earliestFrom.end(), time);
    return static_cast<int>(found - earliestFrom.begin()) - 1;
}

double axisRange(const std::vector<Sample>& samples, IndexWindow window, int axis) {
    double smallest = std::numeric_limits<double>::max();
    double largest = std::numeric_limits<double>::lowest();
    for (int i = window.first; i <= window.last; ++i) {
        const double value = samples[static_cast<std::size_t>(i)].values[axis];
        smallest = std::min(smallest, value);
        largest = std::max(largest, value);
    }
    return largest - smallest;
}

double finiteAxisRange(const std::vector<Sample>& samples, IndexWindow window, int axis) {
    for (int i = window.first; i <= window.last; ++i) {
        if (!std::isfinite(samples[static_cast<std::size_t>(i)].values[axis])) {
            return std::numeric_limits<double>::quiet_NaN();
        }
    }
    return axisRange(samples, window, axis);
}

double maxRange(const std::vector<Sample>& samples, IndexWindow window) {
    if (samples.empty()) {
        return 0.0;
    }
    requireInside(samples, window);
    double largest = std::numeric_limits<double>::min();
    for (int axis = 0; axis < kAxes; ++axis) {
        largest = std::max(largest, axisRange(samples, window, axis));
    }
    return largest;
}

double maxStd(const std::vector<Sample>& samples, IndexWindow window) {
    requireInside(samples, window);
    double largest = std::numeric_limits<double>::min();
    for (int axis = 0; axis < kAxes; ++axis) {
        largest = std::max(largest, axisStd(samples, window, axis));
    }
    return largest;
}

}  // namespace tavocal
