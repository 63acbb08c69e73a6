#include "sensors/inertial/StageIndicator.h"

#include "numerics/Statistics.h"

namespace tavocal {

StageIndicator::StageIndicator(const std::vector<Sample>& samples)
    : stillness(samples), watchedSamples(samples) {}

bool StageIndicator::newestMovedFromReference() const {
    return !watchedSamples.empty() &&
           norm(watchedSamples.back().values - referenceVector) > moveThreshold;
}

Vector StageIndicator::lastWindowMedian() {
    if (watchedSamples.empty()) {
        return {};
    }
    const IndexWindow window = stillness.lastWindow();
    return medianOfAxes(watchedSamples, window.first, window.last);
}

}  // namespace tavocal
