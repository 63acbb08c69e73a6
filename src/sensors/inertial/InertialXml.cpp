#include "sensors/inertial/InertialXml.h"

#include "base/Failures.h"
#include "calibration/CustomXml.h"
#include "calibration/StaticInertialXml.h"
#include "calibration/WhiteNoiseXml.h"
#include "calibration/XmlFields.h"
#include "sensors/inertial/InertialSensor.h"
#include "xml/XmlElement.h"

namespace tavocal {

namespace {

CalibrationBlock readStaticBlock(const XmlElement& data, const CalibrationBlock& head,
                                 const CalibrationBlock& defaultBody) {
    CalibrationBlock block = head;
    block.insert(block.end(), defaultBody.begin(), defaultBody.end());
    readStaticPayload(data, block);
    return block;
}

void importWhiteNoise(double value, InertialSensor& sensor) {
    sensor.setImportedWhiteNoise(value);
    sensor.setWhiteNoise(value);
    sensor.validateCalibrationData(sensor.originalCalibration);
}

}  // namespace

void writeInertialPayload(XmlElement& data, const CalibrationBlock& block,
                          const InertialSensor& sensor) {
    if (block[0] != sensor.formatId) {
        throw CalibrationException("XML parsing error. Unsupported format of calibration data");
    }
    if (sensor.isStatic()) {
        writeStaticPayload(data, block);
    } else if (sensor.isDynamic()) {
        writeWhiteNoisePayload(data, block);
    } else {
        writeCustomPayload(data, block);
    }
}

void readInertialPayload(const XmlElement& data, int formatId, int version,
                         InertialSensor& sensor) {
    if (static_cast<std::uint32_t>(formatId) != sensor.formatId) {
        throw failureAt(data, "XML parsing error. Unsupported format of calibration data.");
    }
    if (sensor.isStatic()) {
        const CalibrationBlock head = blockHead(formatId, version);
        sensor.importCalibration(readStaticBlock(data, head, sensor.getStaticDefault()));
    } else if (sensor.isDynamic()) {
        importWhiteNoise(readWhiteNoisePayload(data), sensor);
    } else {
        throw failureAt(data, "XML parsing error. Unknown format of calibration data.");
    }
}

}  // namespace tavocal
