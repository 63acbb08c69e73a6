#include "sampling/IndicatorHandOver.h"

#include <algorithm>
#include <array>
#include <string>

#include "base/Failures.h"
#include "base/Text.h"
#include "process/Process.h"
#include "sensors/model/Sensor.h"
#include "vocabulary/SensorTypes.h"

namespace tavocal {

namespace {

constexpr std::array<const char*, 4> kClassNames = {kAccelerometerName, kGyroscopeName,
                                                    kMagnetometerName, kAmbientLightName};

bool contains(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

// Offers a sensor unless a primary one of its class was offered before. The result of the last
// offer counts.
bool offer(Process& process, const std::shared_ptr<Sensor>& sensor, bool acceptedBefore,
           std::vector<std::string>& primariesSeen) {
    const std::string displayName = sensor->getDisplayName();
    const bool isNew = std::any_of(kClassNames.begin(), kClassNames.end(), [&](const char* name) {
        return tavocal::contains(displayName, name) && !contains(primariesSeen, name);
    });
    const bool accepted = isNew ? process.setStageIndicator(sensor) : acceptedBefore;
    if (sensor->isPrimary()) {
        primariesSeen.push_back(displayName);
    }
    return accepted;
}

}  // namespace

bool offerIndicators(Process& process, const std::vector<std::shared_ptr<Sensor>>& sensors) {
    const std::vector<std::string> types = process.requiredIndicatorTypes();
    std::vector<std::string> primariesSeen;
    bool accepted = false;
    for (const auto& sensor : sensors) {
        for (const std::string& type : types) {
            if (tavocal::contains(sensor->getDisplayName(), type)) {
                accepted = offer(process, sensor, accepted, primariesSeen);
            }
        }
        if (tavocal::contains(sensor->getDisplayName(), kAmbientLightName)) {
            process.addCalibratedSensor(sensor);
        }
    }
    const std::string wanted = types.empty() ? std::string() : types.front();
    if (!accepted && wanted != kAccelerometerName) {
        throw CalibrationException("Could not locate sensor " + wanted + " for sampling. " +
                                   wanted + " is mandatory for this calibration process");
    }
    return accepted;
}

std::shared_ptr<Sensor> lastIndicator(const Process& process,
                                      const std::vector<std::shared_ptr<Sensor>>& sensors) {
    const auto last = std::find_if(sensors.rbegin(), sensors.rend(), [&](const auto& sensor) {
        return process.isStageIndicator(*sensor);
    });
    if (last == sensors.rend()) {
        throw CalibrationException("Error. stageIndicatorSensor is NULL");
    }
    return *last;
}

}  // namespace tavocal
