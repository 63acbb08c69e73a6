#include "numerics/Statistics.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>

namespace tavocal {

namespace {

double meanSquare(const std::vector<double>& values) {
    const double total = std::accumulate(values.begin(), values.end(), 0.0,
                                         [](double sum, double x) { return sum + x * x; });
    return total / static_cast<double>(values.size());
}

// The values of one axis over the samples first to last, which exist.
std::vector<double> axisValues(const std::vector<Sample>& samples, int first, int last, int axis) {
    std::vector<double> values;
    values.reserve(static_cast<std::size_t>(last - first + 1));
    for (int i = first; i <= last; ++i) {
        const Vector& sample = samples[static_cast<std::size_t>(i)].values;
        if (axis < sample.size()) {
            values.push_back(sample[axis]);
        }
    }
    return values;
}

}  // namespace

bool ordersBefore(double a, double b) {
    if (std::isnan(a) || std::isnan(b)) {
        return !std::isnan(a) && std::isnan(b);
    }
    return a < b || (a == b && std::signbit(a) && !std::signbit(b));
}

double mean(const std::vector<double>& values) {
    if (values.empty()) {
        return 0.0;
    }
    const double total = std::accumulate(values.begin(), values.end(), 0.0);
    return total / static_cast<double>(values.size());
}

double variance(const std::vector<double>& values) {
    if (values.empty()) {
        return 0.0;
    }
    const double average = mean(values);
    return meanSquare(values) - average * average;
}

double stdDev(const std::vector<double>& values) {
    const double square = variance(values);
    return square < 0.0 ? 0.0 : std::sqrt(square);
}

double median(std::vector<double> values) {
    if (values.empty()) {
        return 0.0;
    }
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end(), ordersBefore);
    if (values.size() % 2 == 1) {
        return *middle;
    }
    const double below = *std::max_element(values.begin(), middle, ordersBefore);
    return (below + *middle) / 2.0;
}

Vector medianOfAxes(const std::vector<Sample>& samples, int first, int last) {
    const int from = std::max(first, 0);
    const int to = std::min(last, static_cast<int>(samples.size()) - 1);
    if (from > to) {
        return {};
    }
    Vector result(samples[static_cast<std::size_t>(from)].values.size());
    for (int axis = 0; axis < result.size(); ++axis) {
        result[axis] = median(axisValues(samples, from, to, axis));
    }
    return result;
}

}  // namespace tavocal
