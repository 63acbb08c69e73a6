#pragma once

#include <memory>
#include <string>

#include "numerics/Matrix.h"
#include "sensors/SensorFactory.h"
#include "sensors/magnetic/Magnetometer.h"
#include "simulator/operator/Flow.h"

namespace tavocal::test {

// A place of a magnetometer: in a device with this form factor and hinge.
struct MagnetometerMounting {
    bool secondary;
    const char* formFactor;
    const char* hinge;

    std::string text() const;
    std::unique_ptr<Magnetometer> makeSensor(RunContext& run) const;
    // What it reads, by the simulator's geometry, where the steps of a flow that aren't full turns
    // end: one row each.
    Matrix readings(simulator::Flow flow, double strength, double dipDegrees) const;
    // From the device's frame to the sensor's, by the simulator.
    Matrix frame() const;
};

// All that are told apart. Where the primary one sits doesn't depend on the device.
inline constexpr MagnetometerMounting kMagnetometerMountings[] = {
    {false, "TABLET", "RIGHT"}, {true, "2IN1", "BOTTOM"}, {true, "2IN1", "TOP"},
    {true, "2IN1", "LEFT"},     {true, "2IN1", "RIGHT"},  {true, "MID", "BOTTOM"},
    {true, "MID", "TOP"},       {true, "MID", "LEFT"},    {true, "MID", "RIGHT"}};

}  // namespace tavocal::test
