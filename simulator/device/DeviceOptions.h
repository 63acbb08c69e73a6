#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "simulator/device/Fault.h"
#include "simulator/world/Hand.h"
#include "simulator/world/Room.h"

namespace tavocal::simulator {

// What the device is, where it stands, and what it carries.
struct DeviceOptions {
    std::uint64_t seed = 1;

    std::string sensors = "AGM";  // letters of the kinds it has
    bool secondary = false;       // it has a second one of each
    std::string formFactor = "2IN1";
    std::string hinge = "BOTTOM";

    double fieldMg = 480.0;    // the earth's magnetic field
    double dipDegrees = 60.0;  // how far it points down
    Room room = Room::Clean;   // what else is magnetic there

    // Standard deviation of the noise per axis; without a value that of the kind.
    std::optional<double> noiseG;
    std::optional<double> noiseDps;
    std::optional<double> noiseMg;

    bool perfect = false;     // all sensors are calibrated: no offset, no scale, no other mounting
    bool crossAxis = true;    // scales have elements off the diagonal
    bool leftHanded = false;  // the sensors' axes form left-handed frames
    double hardIronMg = 300.0;  // length of the magnetometer's offset

    double rateHz = 100.0;
    double jitterMs = 0.2;          // standard deviation of the time between samples
    bool wholeMilliseconds = true;  // times are told in whole milliseconds, else microseconds

    Fault fault = Fault::None;
    std::optional<SensorKind> faultSensor;  // without a value the fault's usual one

    HandOptions hand;
};

}  // namespace tavocal::simulator
