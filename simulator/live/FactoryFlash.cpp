#include "simulator/live/FactoryFlash.h"

#include "simulator/device/SensorFactory.h"
#include "simulator/firmware/CalibrationBlocks.h"
#include "simulator/firmware/SensorHub.h"
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

Flash factoryFlash(const LiveOptions& options) {
    Flash flash;
    for (const LUID& luid : hubLuids(options.motion)) {
        flash.store(luid, firstBlock(luid, options.blocks));
    }
    // A factory that calibrates a sensor doesn't know what will go wrong with it.
    DeviceOptions device = options.motion;
    device.fault = Fault::None;
    if (options.blocks == FactoryBlocks::Exact) {
        storeBlocks(makeSensors(device), flash);
    } else if (options.blocks == FactoryBlocks::Other) {
        device.seed += kOtherSeed;
        device.perfect = false;
        storeBlocks(makeSensors(device), flash);
    }
    return flash;
}

}  // namespace tavocal::simulator
