#include "sensors/motion/RotationTracking.h"

#include <vector>

#include "base/Failures.h"
#include "numerics/Interpolation.h"
#include "numerics/Quaternion.h"
#include "numerics/Statistics.h"
#include "sensors/inertial/InertialSensor.h"
#include "sensors/model/SampleWindows.h"

namespace tavocal {

namespace {

constexpr double kPointsPerMotion = 200.0;
constexpr double kRadiansPerDegreeAndSecondPerMs = 1.7453292519943296e-05;

const Sample& sampleAt(const InertialSensor& sensor, int index) {
    return sensor.bufferedData[static_cast<std::size_t>(index)];
}

int sampleCountOf(const InertialSensor& sensor) {
    return static_cast<int>(sensor.bufferedData.size());
}

// The turn of the frame, in radians, that led to a sample of the gyroscope. The world turns the
// other way round in it, hence the sign.
Vector turnBefore(const InertialSensor& gyroscope, int index, const Matrix& alignment) {
    return (alignment * gyroscope.calibratedSample(index, false)) * -1.0 *
           kRadiansPerDegreeAndSecondPerMs * intervalBefore(gyroscope.bufferedData, index);
}

// The reference's vector at a series of moments from `tBegin` on.
std::vector<Sample> trackedVector(const InertialSensor& reference, const InertialSensor& gyroscope,
                                  int stage, const Matrix& alignment, double tBegin, double tEnd) {
    const double step = (tEnd - tBegin) / kPointsPerMotion;
    double last = tBegin;
    std::vector<Sample> track = {{tBegin, reference.calibratedSample(stage, true)}};
    int a = firstIndexAbove(reference.bufferedData, tBegin);
    int b = firstIndexAbove(gyroscope.bufferedData, tBegin);
    if (a == sampleCountOf(reference)) {
        throw CalibrationException("buffered data of sensor" + reference.getDisplayName() +
                                   " is empty");
    }
    Quaternion q;
    for (; a < sampleCountOf(reference) && sampleAt(reference, a).timestamp < tEnd; ++a, ++b) {
        const double t = sampleAt(reference, a).timestamp;
        while (b < sampleCountOf(gyroscope) && sampleAt(gyroscope, b).timestamp < t) {
            ++b;
        }
        if (b >= sampleCountOf(gyroscope)) {
            break;
        }
        q = q * quaternionFromRotationVector(turnBefore(gyroscope, b, alignment));
        if (t > last + step) {
            last = last + step;
            track.push_back({t, rotateByQuaternion(q, track.back().values)});
            q = Quaternion();
        }
    }
    return track;
}

}  // namespace

double rotationTrackingError(const InertialSensor& reference, const InertialSensor& gyroscope,
                             int stage, const Matrix& alignment, double tBegin, double tEnd) {
    const std::vector<Sample> track =
        trackedVector(reference, gyroscope, stage, alignment, tBegin, tEnd);
    const std::vector<Vector> measured = resampleAt(reference.bufferedData, track);
    std::vector<double> distances;
    for (std::size_t i = 0; i + 1 < track.size(); ++i) {
        distances.push_back(norm(reference.calibratedVector(measured[i + 1]) - track[i].values));
    }
    return mean(distances);
}

}  // namespace tavocal
