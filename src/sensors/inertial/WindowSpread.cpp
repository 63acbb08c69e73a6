#include "sensors/inertial/WindowSpread.h"

#include <algorithm>
#include <cmath>

namespace tavocal {

WindowSpread::WindowSpread(const std::vector<Sample>& samples) : watchedSamples(samples) {}

void WindowSpread::measure(IndexWindow window) {
    if (window.first != measured.first || window.last < measured.last) {
        measured = {window.first, window.first - 1};
        axes = {};
    }
    while (measured.last < window.last) {
        ++measured.last;
        const Vector& values = watchedSamples[static_cast<std::size_t>(measured.last)].values;
        for (std::size_t axis = 0; axis < axes.size(); ++axis) {
            axes[axis].add(values[static_cast<int>(axis)]);
        }
    }
}

double WindowSpread::maxRange() const {
    double largest = std::numeric_limits<double>::min();
    for (const Axis& axis : axes) {
        largest = std::max(largest, axis.largest - axis.smallest);
    }
    return largest;
}

double WindowSpread::maxStd() const {
    const double count = measured.last - measured.first + 1;
    double largest = std::numeric_limits<double>::min();
    for (const Axis& axis : axes) {
        const double mean = axis.sum / count;
        largest = std::max(largest, std::sqrt(axis.squares / count - mean * mean));
    }
    return largest;
}

void WindowSpread::Axis::add(double value) {
    sum += value;
    squares += value * value;
    smallest = std::min(smallest, value);
    largest = std::max(largest, value);
}

}  // namespace tavocal
