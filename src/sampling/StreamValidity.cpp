#include "sampling/StreamValidity.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "base/Failures.h"
#include "log/Logger.h"
#include "process/Process.h"
#include "sensors/model/Sensor.h"

namespace tavocal {

namespace {

constexpr const char* kName = "SensorManager::checkDataStreamingValidity";

// The last samples of two sensors may be this far apart, in milliseconds.
constexpr double kLargestLag = 100.0;

using Sensors = std::vector<std::shared_ptr<Sensor>>;

// The last sample that the sensor took into account, or null.
const Sample* lastSampleOf(const std::shared_ptr<Sensor>& sensor, const SensorDataMap& samples) {
    const auto found = samples.find(sensor);
    const std::uint32_t count = sensor->getSampleCount();
    if (found == samples.end() || count == 0 || count > found->second.size()) {
        return nullptr;
    }
    return &found->second[count - 1];
}

bool endsNear(double lastTime, const std::shared_ptr<Sensor>& sensor,
              const SensorDataMap& samples) {
    const Sample* last = lastSampleOf(sensor, samples);
    if (last == nullptr) {
        TAVOCAL_LOG(Debug, kName, "not OK since dataDump");
        return false;
    }
    const double delta = std::trunc(lastTime - last->timestamp);
    if (std::abs(delta) > kLargestLag) {
        TAVOCAL_LOG(Debug, kName,
                    "not OK since delta: " + std::to_string(static_cast<long long>(delta)) +
                        sensor->getDisplayName());
        return false;
    }
    return true;
}

// The last stage indicator, which must have delivered.
std::shared_ptr<Sensor> findIndicator(const Process& process, const Sensors& sensors,
                                      const SensorDataMap& samples) {
    std::shared_ptr<Sensor> indicator;
    for (const auto& sensor : sensors) {
        if (!process.isStageIndicator(*sensor)) {
            continue;
        }
        indicator = sensor;
        if (lastSampleOf(indicator, samples) == nullptr) {
            throw CalibrationException("No data was sampled for " + indicator->getDisplayName());
        }
    }
    if (indicator == nullptr) {
        throw CalibrationException("Error. stageIndicatorSensor is NULL");
    }
    return indicator;
}

}  // namespace

void checkStreamsLasted(const Process& process, const Sensors& sensors,
                        const SensorDataMap& samples) {
    const auto indicator = findIndicator(process, sensors, samples);
    const double lastTime = lastSampleOf(indicator, samples)->timestamp;
    std::string names;
    for (const auto& sensor : sensors) {
        if (sensor != indicator && !endsNear(lastTime, sensor, samples)) {
            names += (names.empty() ? "" : ", ") + sensor->getDisplayName();
        }
    }
    if (!names.empty()) {
        TAVOCAL_LOG(Debug, kName, "throwing from checking validity");
        throw CalibrationException(
            "Data streaming rate was invalid. Not enough data points were sampled for " + names);
    }
}

}  // namespace tavocal
