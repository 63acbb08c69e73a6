#include "sensors/inertial/BufferRanges.h"

#include <algorithm>
#include <limits>

#include "base/Failures.h"

namespace tavocal {

BufferRanges::BufferRanges(const std::vector<Sample>& samples) : watchedSamples(samples) {}

IndexWindow BufferRanges::find(double t, double window) {
    follow();
    const int last = newestNotAbove(t + window);
    if (last < 0) {
        throw CalibrationException("Failed to find buffer range. Inner error");
    }
    return {std::max(newestNotAbove(t), 0), last};
}

double BufferRanges::heldBelow(int index) const {
    const auto next = std::upper_bound(rising.begin(), rising.end(), index);
    return next == rising.end() ? std::numeric_limits<double>::infinity() : timeOf(*next);
}

void BufferRanges::follow() {
    for (; followed < watchedSamples.size(); ++followed) {
        const double time = watchedSamples[followed].timestamp;
        while (!rising.empty() && timeOf(rising.back()) > time) {
            rising.pop_back();
        }
        rising.push_back(static_cast<int>(followed));
    }
}

// -1 if all samples are later.
int BufferRanges::newestNotAbove(double time) const {
    const auto above =
        std::upper_bound(rising.begin(), rising.end(), time,
                         [this](double limit, int index) { return limit < timeOf(index); });
    return above == rising.begin() ? -1 : *(above - 1);
}

double BufferRanges::timeOf(int index) const {
    return watchedSamples[static_cast<std::size_t>(index)].timestamp;
}

}  // namespace tavocal
