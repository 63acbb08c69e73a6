#include "sensors/SensorFactory.h"

#include <algorithm>
#include <array>

#include "sensors/inertial/InertialSensor.h"
#include "sensors/light/AmbientLight.h"
#include "sensors/magnetic/Magnetometer.h"
#include "sensors/model/GenericSensor.h"
#include "sensors/motion/Accelerometer.h"
#include "sensors/motion/Gyroscope.h"
#include "vocabulary/SensorTypes.h"

namespace tavocal {

namespace {

struct TypeRange {
    std::uint16_t first;
    std::uint16_t last;
};

// Inertial sensors that have no calibration of their own.
constexpr std::array<TypeRange, 7> kPlainInertialTypes = {{{0x0071, 0x0072},
                                                           {0x0074, 0x0075},
                                                           {0x0077, 0x007C},
                                                           {0x007E, 0x007E},
                                                           {0x0081, 0x008D},
                                                           {0x0241, 0x0242},
                                                           {0x024F, 0x024F}}};

bool isPlainInertial(std::uint16_t type) {
    return std::any_of(
        kPlainInertialTypes.begin(), kPlainInertialTypes.end(),
        [type](TypeRange range) { return type >= range.first && type <= range.last; });
}

}  // namespace

std::shared_ptr<Sensor> makeSensor(const LUID& luid) {
    switch (luid.SensorTypeId) {
        case kAmbientLightType:
            return std::make_shared<AmbientLight>(luid);
        case kAccelerometerType:
            return std::make_shared<Accelerometer>(luid);
        case kGyroscopeType:
            return std::make_shared<Gyroscope>(luid);
        case kCompassType:
        case kMagnetometerType:
            return std::make_shared<Magnetometer>(luid);
        default:
            break;
    }
    if (isPlainInertial(luid.SensorTypeId)) {
        return std::make_shared<InertialSensor>(luid);
    }
    return std::make_shared<GenericSensor>(luid);
}

}  // namespace tavocal
