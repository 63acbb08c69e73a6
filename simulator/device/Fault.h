#pragma once

#include <optional>
#include <string_view>

#include "simulator/device/SensorKind.h"

namespace tavocal::simulator {

// What can be wrong with one of the device's sensors, primary and secondary alike.
enum class Fault {
    None,
    Noisy,          // far more noise
    Spiky,          // single samples that are far off
    WrongMounting,  // two axes swapped in a sensor that claims to be calibrated
    GyroScale10,    // the gyroscope reads 10 % too much
    EllipticMag,    // the magnetometer reads 30 % too much along its X axis
    Heading30,      // the magnetometer is turned by 30 degrees about Z
};

// "none", "noisy", "spiky", "wrong-mounting", "gyro-scale-10", "elliptic-mag", "heading-30".
std::string_view faultName(Fault fault);
std::optional<Fault> faultFromName(std::string_view name);

// The sensor that has the fault if nobody names one.
SensorKind usualSensor(Fault fault);

}  // namespace tavocal::simulator
