#include "simulator/device/World.h"

#include <algorithm>

namespace tavocal::simulator {

namespace {

constexpr double kRoomLux = 200.0;

}  // namespace

World::World(const DeviceOptions& options, const WorldLightOptions& lightOptions)
    : theDevice(options),
      light(lightOptions),
      theLamp(kRoomLux, lightOptions.rampSeconds),
      lightNoise{Random(options.seed, "noise of " + displayName(SensorKind::AmbientLight, false)),
                 Random(options.seed, "noise of " + displayName(SensorKind::AmbientLight, true))} {
    theLamp.setFlicker(light.flickerLux, 0.0);
}

std::optional<RawReading> World::measure(SensorKind kind, bool secondary, double seconds) {
    if (kind == SensorKind::AmbientLight) {
        return measureLight(secondary, seconds);
    }
    const std::vector<SensorModel>& sensors = theDevice.sensors();
    for (std::size_t i = 0; i < sensors.size(); ++i) {
        if (sensors[i].kind() == kind && sensors[i].secondary() == secondary) {
            const std::optional<Vec3> value = theDevice.read(i, seconds);
            return value ? std::optional(rawReading(kind, std::array{value->x, value->y, value->z}))
                         : std::nullopt;
        }
    }
    return std::nullopt;
}

RawReading World::measureLight(bool secondary, double seconds) {
    const double gain = secondary ? light.secondaryGain : light.gain;
    const double noise = light.noiseLux * lightNoise[secondary ? 1 : 0].normal();
    const double seen = light.dark ? 0.0 : std::max(theLamp.luxAt(seconds) * gain + noise, 0.0);
    return rawReading(SensorKind::AmbientLight, std::array{seen});
}

}  // namespace tavocal::simulator
