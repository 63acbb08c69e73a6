#include "simulator/device/SensorModel.h"

namespace tavocal::simulator {

SensorModel::SensorModel(SensorKind theKind, bool isSecondary, const Mat3& theFrame,
                         const SensorTruth& theTruth, std::uint64_t seed)
    : sensorKind(theKind),
      isSecond(isSecondary),
      ownFrame(theFrame),
      errors(theTruth),
      distortion(inverse(theTruth.scale * theTruth.axisMapping) * theFrame),
      random(seed, "noise of " + displayName(theKind, isSecondary)) {}

Vec3 SensorModel::read(const Vec3& deviceValue) {
    return distortion * deviceValue + errors.offset + errors.noise * random.normalVector() +
           nextSpike();
}

void SensorModel::setSpikes(double size, unsigned period) {
    spikeSize = size;
    spikePeriod = period;
}

Vec3 SensorModel::nextSpike() {
    Vec3 spike;
    if (spikePeriod != 0 && ++readings % spikePeriod == 0) {
        spike[random.below(3)] = random.uniform() < 0.5 ? -spikeSize : spikeSize;
    }
    return spike;
}

}  // namespace tavocal::simulator
