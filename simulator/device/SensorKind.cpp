#include "simulator/device/SensorKind.h"

#include <array>
#include <cstdio>

namespace tavocal::simulator {

namespace {

constexpr std::array<SensorTraits, 4> kTraits = {{
    {"Accelerometer", 'A', 0x0073, "g0", 0.0015, 0.05, 0.03, 0.01, 0.05, 0.8},
    {"Gyroscope", 'G', 0x0076, "deg__sec", 0.06, 2.5, 0.03, 0.01, 1.5, 80.0},
    {"Magnetometer", 'M', 0x020F, "milliGauss", 2.0, 300.0, 0.08, 0.04, 17.0, 300.0},
    {"AmbientLightSensor", '\0', 0x0041, "lux", 0.15, 0.0, 0.0, 0.0, 5.0, 60.0},
}};

constexpr unsigned kVendor = 0x0001;
constexpr unsigned kStatic = 0x02;

}  // namespace

const SensorTraits& traitsOf(SensorKind kind) {
    return kTraits[static_cast<std::size_t>(kind)];
}

std::optional<SensorKind> kindFromLetter(char letter) {
    for (std::size_t i = 0; i < kTraits.size(); ++i) {
        if (letter != '\0' && kTraits[i].letter == letter) {
            return static_cast<SensorKind>(i);
        }
    }
    return std::nullopt;
}

std::string displayName(SensorKind kind, bool secondary) {
    return std::string(traitsOf(kind).name) + (secondary ? "_2" : "");
}

std::string luidText(SensorKind kind, bool secondary) {
    std::array<char, 17> text{};
    std::snprintf(text.data(), text.size(), "%04x%04x%04x%02x%02x",
                  static_cast<unsigned>(traitsOf(kind).typeId), kVendor, 0u, secondary ? 1u : 0u,
                  kStatic);
    return text.data();
}

}  // namespace tavocal::simulator
