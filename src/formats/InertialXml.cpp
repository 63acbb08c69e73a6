#include "formats/InertialXml.h"

#include "base/Failures.h"
#include "formats/CustomXml.h"
#include "formats/StaticInertialXml.h"
#include "formats/WhiteNoiseXml.h"
#include "sensors/InertialSensor.h"

namespace tavocal {

void writeInertialPayload(XmlElement& data, const CalibrationBlock& block,
                          const InertialSensor& sensor) {
    requireBlockSize(block, kBlockHeadSize);
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

}  // namespace tavocal
