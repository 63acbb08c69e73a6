#pragma once

#include <string>
#include <vector>

#include "simulator/device/SensorKind.h"
#include "simulator/maths/Mat3.h"
#include "simulator/maths/Random.h"

namespace tavocal::simulator {

// One reading as it is delivered.
struct Row {
    double time = 0.0;           // milliseconds
    std::vector<double> values;  // g, degrees per second, milligauss or lux
};

// The errors of a sensor: truth = (scale * axisMapping) * (reading - offset), without the noise.
// The magnetometer's scale is that of the true field.
struct SensorTruth {
    Mat3 scale = identity3();
    Mat3 axisMapping = identity3();  // a signed permutation
    Vec3 offset;
    double noise = 0.0;  // standard deviation per axis, white
};

// A three-axis sensor that sits in the device.
class SensorModel {
  public:
    // `theFrame` takes the device's axes to those that the sensor's readings should have.
    // REQUIRES: scale * axisMapping of `theTruth` can be inverted.
    SensorModel(SensorKind theKind, bool isSecondary, const Mat3& theFrame,
                const SensorTruth& theTruth, std::uint64_t seed);

    SensorKind kind() const { return sensorKind; }
    bool secondary() const { return isSecond; }
    std::string name() const { return displayName(sensorKind, isSecond); }
    const SensorTruth& truth() const { return errors; }
    const Mat3& frame() const { return ownFrame; }

    // What the sensor says where a vector of the device's frame has the value `deviceValue`. Each
    // call draws new noise.
    Vec3 read(const Vec3& deviceValue);

    // From now on a reading in every `period` is off by `size` in one axis.
    void setSpikes(double size, unsigned period);

  private:
    Vec3 nextSpike();

    SensorKind sensorKind;
    bool isSecond;
    Mat3 ownFrame;
    SensorTruth errors;
    Mat3 distortion;  // from the device's frame to a reading without offset and noise
    Random random;
    double spikeSize = 0.0;
    unsigned spikePeriod = 0;  // 0 for none
    unsigned readings = 0;
};

}  // namespace tavocal::simulator
