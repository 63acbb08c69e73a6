#pragma once

#include <memory>
#include <string>

#include "sensors/inertial/InertialSensor.h"

namespace tavocal::test {

// "Accelerometer", "Gyroscope" or "Magnetometer", with "_2" behind it for the secondary one; a
// static sensor.
std::shared_ptr<InertialSensor> makeNamedSensor(const std::string& displayName);

// The sensor's element of the report in one line, or "" if there is none. Nothing may be reported
// afterwards.
std::string reportOf(Sensor& sensor);

}  // namespace tavocal::test
