#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "simulator/device/SensorKind.h"
#include "simulator/device/SensorModel.h"

namespace tavocal::simulator {

// One reading in the firmware's integers: millionths of g, 1/100000 of a degree per second,
// microgauss or thousandths of lux.
struct RawReading {
    std::array<std::int32_t, 3> values{};
    std::size_t count = 0;  // how many of them the sensor has: 3, a light sensor 1
};

// The number of a value in g, degrees per second, milligauss or lux, rounded. What is too large
// becomes the largest number.
std::int32_t rawNumber(SensorKind kind, double value);

RawReading rawReading(SensorKind kind, std::span<const double> values);

}  // namespace tavocal::simulator
