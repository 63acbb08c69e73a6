#include "support/NamedSensor.h"

#include "base/Text.h"
#include "sensors/SensorFactory.h"
#include "support/XmlOutline.h"
#include "vocabulary/SensorTypes.h"
#include "xml/XmlElement.h"

namespace tavocal::test {

std::shared_ptr<InertialSensor> makeNamedSensor(const std::string& displayName) {
    LUID luid;
    luid.SensorTypeId = startsWith(displayName, kAccelerometerName) ? kAccelerometerType
                        : startsWith(displayName, kGyroscopeName)   ? kGyroscopeType
                                                                    : kMagnetometerType;
    luid.InstanceId = contains(displayName, "_2") ? 1 : 0;
    luid.Flags = kStaticFlag;
    return std::dynamic_pointer_cast<InertialSensor>(makeSensor(luid));
}

std::string reportOf(Sensor& sensor) {
    const std::unique_ptr<XmlElement> element = sensor.report.release();
    return element == nullptr ? "" : outline(*element);
}

}  // namespace tavocal::test
