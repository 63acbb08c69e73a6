#include "sensors/model/SampleWindows.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tavocal {

namespace {

int sizeOf(const std::vector<Sample>& samples) {
    return static_cast<int>(samples.size());
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

double finiteAxisRange(const std::vector<Sample>& samples, IndexWindow window, int axis) {
    double smallest = std::numeric_limits<double>::max();
    double largest = std::numeric_limits<double>::lowest();
    for (int i = window.first; i <= window.last; ++i) {
        const double value = samples[static_cast<std::size_t>(i)].values[axis];
        if (!std::isfinite(value)) {
            return std::numeric_limits<double>::quiet_NaN();
        }
        smallest = std::min(smallest, value);
        largest = std::max(largest, value);
    }
    return largest - smallest;
}

}  // namespace tavocal
