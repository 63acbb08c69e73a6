#pragma once

#include <array>
#include <optional>

#include "simulator/device/Device.h"
#include "simulator/device/RawReading.h"
#include "simulator/world/Lamp.h"

namespace tavocal::simulator {

// The light sensors of a device and the lamp above them.
struct WorldLightOptions {
    double gain = 0.5;           // what the sensor reads of each lux
    double secondaryGain = 0.8;  // the same of the second one
    double noiseLux = 0.15;      // standard deviation of a reading
    double flickerLux = 0.4;     // swing of the light
    double rampSeconds = 0.8;    // of a change from level to level
    bool dark = false;           // something covers the sensors
};

// Everything that the firmware's sensors measure, and that an operator can act upon. Times are in
// seconds. One thread at a time.
class World {
  public:
    World(const DeviceOptions& options, const WorldLightOptions& lightOptions);

    Device& device() { return theDevice; }
    Lamp& lamp() { return theLamp; }

    // What a sensor measures at a time, with new noise in each call. Nothing from a sensor that the
    // device doesn't have, or that is silent.
    std::optional<RawReading> measure(SensorKind kind, bool secondary, double seconds);

  private:
    RawReading measureLight(bool secondary, double seconds);

    Device theDevice;
    WorldLightOptions light;
    Lamp theLamp;
    std::array<Random, 2> lightNoise;
};

}  // namespace tavocal::simulator
