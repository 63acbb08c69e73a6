#include "simulator/device/Fault.h"

#include <array>

namespace tavocal::simulator {

namespace {

struct Entry {
    std::string_view name;
    SensorKind usualSensor;
};

constexpr std::array<Entry, 7> kFaults = {{
    {"none", SensorKind::Accelerometer},
    {"noisy", SensorKind::Gyroscope},
    {"spiky", SensorKind::Accelerometer},
    {"wrong-mounting", SensorKind::Accelerometer},
    {"gyro-scale-10", SensorKind::Gyroscope},
    {"elliptic-mag", SensorKind::Magnetometer},
    {"heading-30", SensorKind::Magnetometer},
}};

}  // namespace

std::string_view faultName(Fault fault) {
    return kFaults[static_cast<std::size_t>(fault)].name;
}

std::optional<Fault> faultFromName(std::string_view name) {
    for (std::size_t i = 0; i < kFaults.size(); ++i) {
        if (kFaults[i].name == name) {
            return static_cast<Fault>(i);
        }
    }
    return std::nullopt;
}

SensorKind usualSensor(Fault fault) {
    return kFaults[static_cast<std::size_t>(fault)].usualSensor;
}

}  // namespace tavocal::simulator
