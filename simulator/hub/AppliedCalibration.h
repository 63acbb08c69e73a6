#pragma once

#include <array>
#include <cstdint>

#include "base/Bytes.h"
#include "simulator/device/RawReading.h"

namespace tavocal::simulator {

// What the firmware does to each reading of a static sensor before it publishes it, in whole
// numbers: y = (S A) (x - O) for a motion sensor, with S the scale, A the axis mapping and O the
// offset of the sensor's block; y = x times multiplier over divider for a light sensor.
class AppliedCalibration {
  public:
    // Changes nothing.
    AppliedCalibration() = default;
    // A vendor's format, or no block at all, changes nothing. REQUIRES: any other block fits the
    // sensor.
    AppliedCalibration(SensorKind kind, const Bytes& block);

    RawReading apply(const RawReading& reading) const;

  private:
    void readMotion(const Bytes& block);
    void readLight(const Bytes& block);

    std::array<std::int64_t, 3> offset{};
    std::array<std::int64_t, 9> matrix{1, 0, 0, 0, 1, 0, 0, 0, 1};  // S A times the divider
    std::int64_t divider = 1;
};

}  // namespace tavocal::simulator
