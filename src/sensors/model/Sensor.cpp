#include "sensors/model/Sensor.h"

#include <utility>

#include "base/Failures.h"
#include "base/LittleEndian.h"
#include "calibration/CustomXml.h"
#include "calibration/InertialBlock.h"
#include "calibration/SensorElement.h"
#include "firmware/SDT.h"
#include "sensors/model/RunContext.h"
#include "xml/XmlElement.h"

namespace tavocal {

Sensor::Sensor(const LUID& identity) : luid(identity) {}

Sensor::~Sensor() = default;

std::string Sensor::getDisplayName() const {
    return isPrimary() ? name : name + "_2";
}

void Sensor::setWhiteNoise(double value) {
    if (luid.Flags == 0) {
        throw CalibrationException("Internal error. Invalid operation was performed");
    }
    if (originalCalibration.empty()) {
        throw CalibrationException("Error. No original scaling for dynamic sensor " + name);
    }
    calibrationToWrite = withWhiteNoise(originalCalibration, value);
}

std::uint32_t Sensor::getSampleCount() const {
    return static_cast<std::uint32_t>(bufferedData.size());
}

void Sensor::loadFromFirmware(SDT& firmware) {
    CalibrationBlock block = firmware.getCalibrationData(luid);
    if (!block.empty()) {
        setCalibrationData(std::move(block));
    }
}

void Sensor::setCalibrationData(CalibrationBlock block) {
    validateCalibrationData(block);
    calibrationLoaded = true;
    originalCalibration = std::move(block);
}

void Sensor::validateCalibrationData(const CalibrationBlock& block) const {
    validateFormatAndSize(block);
}

void Sensor::validateFormatAndSize(const CalibrationBlock& block) const {
    if (block.empty()) {
        throw CalibrationException("Invalid calibration data size");
    }
    if (block[0] >= kFirstVendorFormat) {
        return;
    }
    if (block[0] != formatId) {
        throw CalibrationException("Unsupported format of " + name + " Sensor calibration data");
    }
    validateSize(block);
}

void Sensor::validateSize(const CalibrationBlock& block) const {
    const bool tooSmall = minCalibrationSize != 0 && block.size() < minCalibrationSize;
    const bool tooLarge = maxCalibrationSize != 0 && block.size() > maxCalibrationSize;
    if (tooSmall || tooLarge) {
        throw CalibrationException("Invalid calibration data size");
    }
}

void Sensor::importCalibration(CalibrationBlock block) {
    validateCalibrationData(block);
    calibrationToWrite = std::move(block);
}

std::unique_ptr<XmlElement> Sensor::sensorToXml(bool useCurrent) const {
    const bool useOriginal = useCurrent || calibrationToWrite.empty();
    if (useOriginal && (originalCalibration.empty() || !calibrationLoaded)) {
        return nullptr;
    }
    const CalibrationBlock& block = useOriginal ? originalCalibration : calibrationToWrite;
    requireBlockSize(block, kBlockHeadSize);
    auto element = makeSensorElement(luid);
    XmlElement& data = addCalibrationData(*element, block);
    if (block[0] < kFirstVendorFormat) {
        writeCalibrationXml(data, block);
    } else {
        writeCustomPayload(data, block);
    }
    return element;
}

RunContext& Sensor::run() const {
    if (manager == nullptr) {
        throw CalibrationException("Internal error");
    }
    return *manager;
}

}  // namespace tavocal
