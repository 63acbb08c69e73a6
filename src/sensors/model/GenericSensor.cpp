#include "sensors/model/GenericSensor.h"

#include "base/Failures.h"
#include "calibration/CustomXml.h"

namespace tavocal {

void GenericSensor::validateCalibrationData(const CalibrationBlock& block) const {
    if (block.empty()) {
        throw CalibrationException("Invalid calibration data size");
    }
    if (block[0] < kFirstVendorFormat) {
        validateSize(block);
    }
}

void GenericSensor::readCalibrationXml(const XmlElement& /*data*/, int /*formatId*/,
                                       int /*version*/) {
    throw CalibrationException("Error. No calibration data format is available");
}

void GenericSensor::writeCalibrationXml(XmlElement& data, const CalibrationBlock& /*block*/) const {
    writeCustomPayload(data, calibrationToWrite.empty() ? originalCalibration : calibrationToWrite);
}

}  // namespace tavocal
