#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavocal::simulator {

enum class SensorKind { Accelerometer, Gyroscope, Magnetometer, AmbientLight };

// What all sensors of one kind have in common. Values are in g, degrees per second, milligauss and
// lux.
struct SensorTraits {
    std::string_view name;
    char letter;           // of the list of sensors, 0 for the light sensor
    std::uint16_t typeId;  // first field of the identifier
    std::string_view unit;
    double usualNoise;   // standard deviation
    double offsetSize;   // of the usual offset, which is off by as much as this
    double scaleSpread;  // of the scale's diagonal around 1
    double crossSpread;  // of its other elements around 0
    double noisyNoise;   // noise of a broken sensor that can still be told from a moving device
    double spikeSize;
};

const SensorTraits& traitsOf(SensorKind kind);
std::optional<SensorKind> kindFromLetter(char letter);

// "Gyroscope", or "Gyroscope_2" for the secondary one.
std::string displayName(SensorKind kind, bool secondary);

// The 16 hexadecimal digits of the identifier of a static sensor.
std::string luidText(SensorKind kind, bool secondary);

}  // namespace tavocal::simulator
