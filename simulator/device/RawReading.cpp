#include "simulator/device/RawReading.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tavocal::simulator {

namespace {

constexpr std::array<double, 4> kUnitsPerValue = {1000000.0, 100000.0, 1000.0, 1000.0};

}  // namespace

std::int32_t rawNumber(SensorKind kind, double value) {
    constexpr double kLowest = std::numeric_limits<std::int32_t>::min();
    constexpr double kHighest = std::numeric_limits<std::int32_t>::max();
    const double units = std::round(value * kUnitsPerValue[static_cast<std::size_t>(kind)]);
    return static_cast<std::int32_t>(std::clamp(units, kLowest, kHighest));
}

RawReading rawReading(SensorKind kind, std::span<const double> values) {
    RawReading raw;
    raw.count = std::min(values.size(), raw.values.size());
    for (std::size_t i = 0; i < raw.count; ++i) {
        raw.values[i] = rawNumber(kind, values[i]);
    }
    return raw;
}

}  // namespace tavocal::simulator
