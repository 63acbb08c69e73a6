#include "simulator/live/LiveDevice.h"

#include "platform/Files.h"
#include "simulator/base/OutputFolder.h"
#include "simulator/live/DeviceFile.h"

namespace tavocal::simulator {

namespace {

FirmwareOptions firmwareOptions(const LiveOptions& options) {
    FirmwareOptions result;
    result.device = options.motion;
    result.fault = options.fault;
    result.faultAfter = options.faultAfter;
    result.faultSensor = options.motion.faultSensor.value_or(result.faultSensor);
    return result;
}

}  // namespace

LiveDevice::LiveDevice(const LiveRequest& request)
    : options(request.options),
      theWorld(options.motion, options.light),
      theFirmware(firmwareOptions(options), request.flash, theWorld) {}

void LiveDevice::save() const {
    if (options.deviceFile.empty()) {
        return;
    }
    const std::string reason =
        platform::writeFile(options.deviceFile, deviceFileText(options, theFirmware.flash()));
    if (!reason.empty()) {
        throw OutputError("Can't write " + options.deviceFile + ": " + reason);
    }
}

}  // namespace tavocal::simulator
