#include "app/CalibratedDump.h"

#include "base/Failures.h"
#include "sensors/inertial/InertialSensor.h"
#include "sensors/light/AmbientLight.h"

namespace tavocal {

namespace {

template <typename Class>
const Class& as(const Sensor& sensor) {
    const auto* cast = dynamic_cast<const Class*>(&sensor);
    if (cast == nullptr) {
        throw CalibrationException("sensor is NULL.");
    }
    return *cast;
}

template <typename Calibrate>
std::vector<Sample> calibrated(const std::vector<Sample>& samples, Calibrate calibrate) {
    std::vector<Sample> result = samples;
    for (Sample& sample : result) {
        // A dump may hold a row without values.
        if (!sample.values.empty()) {
            sample.values = calibrate(sample.values);
        }
    }
    return result;
}

}  // namespace

SensorDataMap calibratedSamples(const SensorDataMap& samples) {
    SensorDataMap result;
    for (const auto& [sensor, rows] : samples) {
        if (sensor->sensorKind == SensorKind::Inertial) {
            const auto& inertial = as<InertialSensor>(*sensor);
            result[sensor] = calibrated(
                rows, [&](const Vector& values) { return inertial.calibratedVector(values); });
        } else if (sensor->sensorKind == SensorKind::AmbientLight) {
            const auto& light = as<AmbientLight>(*sensor);
            result[sensor] =
                calibrated(rows, [&](const Vector& values) { return light.applyScale(values); });
        }
    }
    return result;
}

}  // namespace tavocal
