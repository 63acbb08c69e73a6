#include "sensors/inertial/InertialBlockSensor.h"

#include <utility>

#include "base/Failures.h"
#include "base/LittleEndian.h"
#include "calibration/CustomXml.h"
#include "calibration/InertialBlock.h"
#include "calibration/StaticInertialXml.h"
#include "calibration/WhiteNoiseXml.h"
#include "calibration/XmlFields.h"
#include "firmware/SDT.h"
#include "log/ScopeLog.h"
#include "platform/Console.h"
#include "xml/XmlElement.h"

namespace tavocal {

InertialBlockSensor::InertialBlockSensor(const LUID& identity) : Sensor(identity) {
    sensorKind = SensorKind::Inertial;
    valuesPerSample = 3;
    if (isStatic()) {
        minCalibrationSize = kStaticBlockSize;
        maxCalibrationSize = kStaticBlockSize;
    } else if (isDynamic()) {
        formatId = 1;
        minCalibrationSize = 12;
        maxCalibrationSize = 66;
    }
}

// ---- Loading ----

void InertialBlockSensor::loadFromFirmware(SDT& firmware) {
    Sensor::loadFromFirmware(firmware);
    formFactor = firmware.getFormFactor();
    hinge = firmware.getHinge();
}

void InertialBlockSensor::setCalibrationData(CalibrationBlock block) {
    if (isDynamic() && !block.empty() && block[0] != formatId) {
        platform::Console::instance().write(
            "Warning: Dynamic sensor calibration data is outdated. Ignoring the dynamic " + name +
            "\n");
        return;
    }
    Sensor::setCalibrationData(std::move(block));
    if (isDynamic() && whiteNoiseImported) {
        calibrationToWrite = withWhiteNoise(originalCalibration, importedWhiteNoise);
    }
}

void InertialBlockSensor::validateCalibrationData(const CalibrationBlock& block) const {
    try {
        Sensor::validateCalibrationData(block);
    } catch (const CalibrationException&) {
        const bool hasVendorLength = block.size() >= kVendorDataPosition && block[0] == formatId;
        if (!hasVendorLength ||
            block.size() != maxCalibrationSize + readU16(block, kVendorLengthPosition)) {
            throw;
        }
    }
}

// ---- Calibration files ----

void InertialBlockSensor::writeCalibrationXml(XmlElement& data,
                                              const CalibrationBlock& block) const {
    requireBlockSize(block, kBlockHeadSize);
    if (block[0] != formatId) {
        throw CalibrationException("XML parsing error. Unsupported format of calibration data");
    }
    if (isStatic()) {
        writeStaticPayload(data, block);
    } else if (isDynamic()) {
        writeWhiteNoisePayload(data, block);
    } else {
        writeCustomPayload(data, block);
    }
}

void InertialBlockSensor::readCalibrationXml(const XmlElement& data, int blockFormat, int version) {
    if (static_cast<std::uint32_t>(blockFormat) != formatId) {
        throw failureAt(data, "XML parsing error. Unsupported format of calibration data.");
    }
    if (isStatic()) {
        importStatic(data, version);
    } else if (isDynamic()) {
        importWhiteNoise(readWhiteNoisePayload(data));
    } else {
        throw failureAt(data, "XML parsing error. Unknown format of calibration data.");
    }
}

void InertialBlockSensor::importStatic(const XmlElement& data, int version) {
    CalibrationBlock block = blockHead(static_cast<int>(formatId), version);
    const CalibrationBlock body = getStaticDefault();
    block.insert(block.end(), body.begin(), body.end());
    readStaticPayload(data, block);
    importCalibration(std::move(block));
}

void InertialBlockSensor::importWhiteNoise(double value) {
    importedWhiteNoise = value;
    whiteNoiseImported = true;
    setWhiteNoise(value);
    validateCalibrationData(originalCalibration);
}

// ---- Reversal ----

void InertialBlockSensor::calcReverseSdt() {
    TAVOCAL_SCOPE_ENTERED("InertialSensor::calcReverseSdt");
    if (!originalCalibration.empty()) {
        reversal = reversalOf(originalCalibration, firmwareUnit, samplingUnit, report);
    }
}

void InertialBlockSensor::reverseStaticCalibration(Sample& sample) {
    // Logged for the first sample only, so that a log stays small.
    if (!reversalLogged) {
        reversalLogged = true;
        TAVOCAL_SCOPE_ENTERED("InertialSensor::reverseStaticCalibration");
    }
    if (!originalCalibration.empty()) {
        sample.values = reversal.reverseMatrix * (sample.values - reversal.reverseOffset);
    }
}

// ---- New blocks ----

CalibrationBlock InertialBlockSensor::prependFormat(const CalibrationBlock& body) const {
    TAVOCAL_SCOPE_STARTED("InertialSensor::prependFormat");
    CalibrationBlock block = blockHead(static_cast<int>(formatId & 0xFF), 0);
    block.insert(block.end(), body.begin(), body.end());
    return block;
}

CalibrationBlock InertialBlockSensor::getStaticDefault() const {
    TAVOCAL_SCOPE_STARTED("InertialSensor::getStaticDefault");
    if (!isStatic()) {
        throw CalibrationException("Internal error: not implemented");
    }
    const FixedPointScale scale = convertScaling(identity(3));
    return staticBody({}, scale, compressAxisMapping(identity(3)));
}

}  // namespace tavocal
