#include "simulator/hub/SensorHub.h"

#include "simulator/device/World.h"
#include "simulator/hub/Flash.h"

namespace tavocal::simulator {

namespace {

SensorKind kindOf(const LUID& luid) {
    for (const SensorKind kind :
         {SensorKind::Accelerometer, SensorKind::Gyroscope, SensorKind::Magnetometer}) {
        if (traitsOf(kind).typeId == luid.SensorTypeId) {
            return kind;
        }
    }
    return SensorKind::AmbientLight;
}

LUID staticLuid(SensorKind kind, bool secondary) {
    LUID luid;
    parseLuidText(luidText(kind, secondary), luid);
    return luid;
}

LUID dynamicLuid(SensorKind kind) {
    LUID luid = staticLuid(kind, false);
    luid.VendorId = 0;
    luid.Flags = kDynamicFlag;
    return luid;
}

void appendKind(SensorKind kind, bool secondary, std::vector<LUID>& luids) {
    luids.push_back(staticLuid(kind, false));
    if (secondary) {
        luids.push_back(staticLuid(kind, true));
    }
}

}  // namespace

std::vector<LUID> hubLuids(const DeviceOptions& options) {
    std::vector<LUID> luids;
    for (const char letter : options.sensors) {
        if (const auto kind = kindFromLetter(letter)) {
            appendKind(*kind, options.secondary, luids);
            luids.push_back(dynamicLuid(*kind));
        }
    }
    appendKind(SensorKind::AmbientLight, options.secondary, luids);
    return luids;
}

SensorHub::SensorHub(const DeviceOptions& options, World& theWorld) : world(theWorld) {
    for (const LUID& luid : hubLuids(options)) {
        sensors.emplace_back(kindOf(luid), luid, options.jitterMs / 1000.0, options.seed);
    }
}

SensorGroups SensorHub::groups() const {
    SensorGroups groups;
    for (const HubSensor& sensor : sensors) {
        if (groups.empty() || groups.back()[0].SensorTypeId != sensor.luid().SensorTypeId) {
            groups.emplace_back();
        }
        groups.back().push_back(sensor.luid());
    }
    return groups;
}

HubSensor* SensorHub::find(const LUID& luid) {
    for (HubSensor& sensor : sensors) {
        if (sensor.luid() == luid) {
            return &sensor;
        }
    }
    return nullptr;
}

void SensorHub::restart(const Flash& flash) {
    for (HubSensor& sensor : sensors) {
        sensor.reset();
        if (sensor.isStatic()) {
            sensor.calibration = AppliedCalibration(sensor.kind(), flash.block(sensor.luid()));
        }
    }
}

void SensorHub::switchOn(double now) {
    for (HubSensor& sensor : sensors) {
        sensor.switchOn(now);
    }
}

void SensorHub::advanceTo(double seconds, const ReadingSink& sink) {
    while (HubSensor* sensor = earliest(seconds)) {
        const double due = sensor->nextSample();
        sensor->step();
        if (const auto reading = world.measure(sensor->kind(), sensor->secondary(), due)) {
            sink(*sensor, due, sensor->calibration.apply(*reading));
        }
    }
}

void SensorHub::skipTo(double seconds) {
    while (HubSensor* sensor = earliest(seconds)) {
        sensor->step();
    }
}

HubSensor* SensorHub::earliest(double limit) {
    HubSensor* found = nullptr;
    for (HubSensor& sensor : sensors) {
        const double due = sensor.nextSample();
        if (due <= limit && (!found || due < found->nextSample())) {
            found = &sensor;
        }
    }
    return found;
}

}  // namespace tavocal::simulator
