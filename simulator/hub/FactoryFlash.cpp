#include "simulator/hub/FactoryFlash.h"

#include "simulator/device/SensorFactory.h"
#include "simulator/hub/CalibrationBlocks.h"
#include "simulator/hub/SensorHub.h"
#include "vocabulary/SensorTypes.h"

namespace tavocal::simulator {

namespace {

constexpr double kFactoryMultiplier = 1.25;
constexpr std::uint64_t kOtherSeed = 7919;

// The blocks of the static motion sensors of a device with these errors.
void storeBlocks(const std::vector<SensorModel>& sensors, Flash& flash) {
    for (const SensorModel& sensor : sensors) {
        LUID luid;
        parseLuidText(luidText(sensor.kind(), sensor.secondary()), luid);
        flash.store(luid, blockFor(sensor.kind(), sensor.truth()));
    }
}

Bytes firstBlock(const LUID& luid, FactoryBlocks blocks) {
    if ((luid.Flags & kDynamicFlag) != 0) {
        return dynamicBlock(luid);
    }
    if (luid.SensorTypeId == kAmbientLightType) {
        return lightBlock(kFactoryMultiplier);
    }
    return blocks == FactoryBlocks::Missing ? Bytes() : neutralBlock(luid);
}

}  // namespace

Flash factoryFlash(DeviceOptions device, FactoryBlocks blocks) {
    Flash flash;
    for (const LUID& luid : hubLuids(device)) {
        flash.store(luid, firstBlock(luid, blocks));
    }
    // A factory that calibrates a sensor doesn't know what will go wrong with it.
    device.fault = Fault::None;
    if (blocks == FactoryBlocks::Exact) {
        storeBlocks(makeSensors(device), flash);
    } else if (blocks == FactoryBlocks::Other) {
        device.seed += kOtherSeed;
        device.perfect = false;
        storeBlocks(makeSensors(device), flash);
    }
    return flash;
}

}  // namespace tavocal::simulator
