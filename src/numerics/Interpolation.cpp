#include "numerics/Interpolation.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>

namespace tavocal {

namespace {

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr int kAxes = 3;

// The interval that holds x: xs[i] <= x < xs[i + 1]. REQUIRES: 2 <= count <= xs.size(). Stays
// within the table whatever it holds.
std::size_t findInterval(const std::vector<double>& xs, std::size_t count, double x) {
    std::size_t low = 0;
    std::size_t high = count - 1;
    while (high - low > 1) {
        const std::size_t middle = low + (high - low) / 2;
        if (xs[middle] <= x) {
            low = middle;
        } else {
            high = middle;
        }
    }
    return low;
}

double axisValue(const Sample& sample, int axis) {
    return axis < sample.values.size() ? sample.values[axis] : kNotANumber;
}

}  // namespace

double interpolate(const std::vector<double>& xs, const std::vector<double>& ys, double x) {
    const std::size_t count = std::min(xs.size(), ys.size());
    if (count == 0) {
        return kNotANumber;
    }
    if (count == 1 || x <= xs.front()) {
        return ys.front();
    }
    if (x >= xs[count - 1]) {
        return ys[count - 1];
    }
    const std::size_t i = findInterval(xs, count, x);
    return (x - xs[i]) * (ys[i + 1] - ys[i]) / (xs[i + 1] - xs[i]) + ys[i];
}

std::vector<Vector> resampleAt(const std::vector<Sample>& samples,
                               const std::vector<Sample>& times) {
    std::vector<double> timestamps;
    std::array<std::vector<double>, kAxes> axes;
    for (const Sample& sample : samples) {
        timestamps.push_back(sample.timestamp);
        for (int axis = 0; axis < kAxes; ++axis) {
            axes[static_cast<std::size_t>(axis)].push_back(axisValue(sample, axis));
        }
    }
    std::vector<Vector> result;
    result.reserve(times.size());
    for (const Sample& entry : times) {
        const double t = entry.timestamp;
        result.push_back({interpolate(timestamps, axes[0], t), interpolate(timestamps, axes[1], t),
                          interpolate(timestamps, axes[2], t)});
    }
    return result;
}

}  // namespace tavocal
