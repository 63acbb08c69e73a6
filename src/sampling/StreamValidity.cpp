#include "sampling/StreamValidity.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "base/Failures.h"
#include "base/Text.h"
#include "log/Logger.h"
#include "process/Process.h"
#include "sampling/IndicatorHandOver.h"
#include "sampling/SamplingState.h"
#include "sensors/model/Sensor.h"

namespace tavocal {

namespace {

constexpr const char* kName = "SensorManager::checkDataStreamingValidity";

// The last samples of two sensors may be this far apart, in milliseconds.
constexpr double kLargestLag = 100.0;

// The last sample that the sensor took into account, or null.
const Sample* lastSampleOf(const std::shared_ptr<Sensor>& sensor, const SensorDataMap& samples) {
    const auto found = samples.find(sensor);
    const std::uint32_t count = sensor->getSampleCount();
    if (found == samples.end() || count == 0 || count > found->second.size()) {
        return nullptr;
    }
    return &found->second[count - 1];
}

// No integer type holds the span of any two clocks.
std::string wholeText(double whole) {
    const std::string text = fixedText(whole);
    return text.substr(0, text.find('.'));
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
                    "not OK since delta: " + wholeText(delta) + sensor->getDisplayName());
        return false;
    }
    return true;
}

// The last stage indicator. All of them must have delivered.
std::shared_ptr<Sensor> deliveringIndicator(const SamplingState& state) {
    for (const auto& sensor : state.sensors) {
        if (state.process->isStageIndicator(*sensor) &&
            lastSampleOf(sensor, state.samples) == nullptr) {
            throw CalibrationException("No data was sampled for " + sensor->getDisplayName());
        }
    }
    return lastIndicator(*state.process, state.sensors);
}

void checkStreamsLasted(const SamplingState& state) {
    const auto indicator = deliveringIndicator(state);
    const double lastTime = lastSampleOf(indicator, state.samples)->timestamp;
    std::string names;
    for (const auto& sensor : state.sensors) {
        if (sensor != indicator && !endsNear(lastTime, sensor, state.samples)) {
            names += (names.empty() ? "" : ", ") + sensor->getDisplayName();
        }
    }
    if (!names.empty()) {
        TAVOCAL_LOG(Debug, kName, "throwing from checking validity");
        throw CalibrationException(
            "Data streaming rate was invalid. Not enough data points were sampled for " + names);
    }
}

}  // namespace

void checkDataStreamingValidity(const SamplingState& state) {
    TAVOCAL_LOG(Debug, kName, "Started checking validity");
    if (state.process->runType == RunCommand::MagEnvironmentTest) {
        return;
    }
    if (!state.allStagesDone || !state.stages.status()) {
        TAVOCAL_LOG(Debug, kName, "Leaving data streaming validity - state invalid");
        return;
    }
    checkStreamsLasted(state);
    TAVOCAL_LOG(Debug, kName, "Finished checking validity");
}

}  // namespace tavocal
