#include "sensors/inertial/StageIndicator.h"

#include "numerics/Statistics.h"

namespace tavocal {

StageIndicator::StageIndicator(const std::vector<Sample>& samples) : watchedSamples(samples) {}

bool StageIndicator::newestMovedFromReference() const {
    return !watchedSamples.empty() &&
           norm(watchedSamples.back().values - referenceVector) > moveThreshold;
}

bool StageIndicator::isStill(bool firstStage) {
    return tavocal::isStill(watchedSamples, stillness, firstStage);
}

double StageIndicator::stillExtension(double t) const {
    return tavocal::stillExtension(watchedSamples, stillness.stillWindow, t);
}

Vector StageIndicator::lastWindowMedian() const {
    if (watchedSamples.empty()) {
        return {};
    }
    const IndexWindow window = lastWindow(watchedSamples, stillness.stillWindow);
    return medianOfAxes(watchedSamples, window.first, window.last);
}

}  // namespace tavocal
