#pragma once

#include <cstdint>

namespace tavocal {

// SensorTypeId values that have a class of their own, and the class names that display names are
// searched for.
constexpr std::uint16_t kAmbientLightType = 0x0041;
constexpr std::uint16_t kAccelerometerType = 0x0073;
constexpr std::uint16_t kGyroscopeType = 0x0076;
constexpr std::uint16_t kCompassType = 0x007D;
constexpr std::uint16_t kMagnetometerType = 0x020F;

// What a sensor's class makes of it. A generic sensor is passed through as it is.
enum class SensorKind { Generic = 0, Inertial = 1, AmbientLight = 2 };

constexpr const char* kAccelerometerName = "Accelerometer";
constexpr const char* kGyroscopeName = "Gyroscope";
constexpr const char* kMagnetometerName = "Magnetometer";
constexpr const char* kAmbientLightName = "AmbientLightSensor";

}  // namespace tavocal
