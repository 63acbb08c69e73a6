#include "sampling/SensorManager.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "base/Failures.h"
#include "base/Logger.h"
#include "base/Text.h"
#include "formats/CsvParser.h"
#include "formats/DumpPaths.h"
#include "platform/Console.h"
#include "process/Process.h"
#include "sampling/ReplayMerge.h"
#include "sensors/Sensor.h"
#include "sensors/SensorTypes.h"

namespace tavocal {

namespace {

constexpr std::array<const char*, 4> kClassNames = {kAccelerometerName, kGyroscopeName,
                                                    kMagnetometerName, kAmbientLightName};

// The last samples of two sensors may be this far apart, in milliseconds.
constexpr double kLargestLag = 100.0;

bool contains(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

SensorManager::SensorManager() = default;

SensorManager::~SensorManager() = default;

// ---- Hand-over ----

void SensorManager::setSensors(const std::vector<std::shared_ptr<Sensor>>& runSensors) {
    sensors = runSensors;
    for (const auto& sensor : sensors) {
        sensor->setManager(this);
    }
}

void SensorManager::setProcess(const std::shared_ptr<Process>& runProcess) {
    process = runProcess;
    offerIndicators();
    process->buildStages();
}

void SensorManager::offerIndicators() {
    const std::vector<std::string> types = process->requiredIndicatorTypes();
    std::vector<std::string> primariesSeen;
    bool accepted = false;
    for (const auto& sensor : sensors) {
        for (const std::string& type : types) {
            if (tavocal::contains(sensor->getDisplayName(), type)) {
                accepted = offerToProcess(sensor, accepted, primariesSeen);
            }
        }
        if (tavocal::contains(sensor->getDisplayName(), kAmbientLightName)) {
            process->addCalibratedSensor(sensor);
        }
    }
    if (accepted) {
        return;
    }
    const std::string wanted = types.empty() ? std::string() : types.front();
    if (wanted != kAccelerometerName) {
        throw CalibrationException("Could not locate sensor " + wanted + " for sampling. " +
                                   wanted + " is mandatory for this calibration process");
    }
    addAccelerometer();
}

// Offers a sensor unless a primary one of its class was offered before. The result of the last
// offer counts.
bool SensorManager::offerToProcess(const std::shared_ptr<Sensor>& sensor, bool acceptedBefore,
                                   std::vector<std::string>& primariesSeen) {
    const std::string displayName = sensor->getDisplayName();
    bool accepted = acceptedBefore;
    const auto* const offered =
        std::find_if(kClassNames.begin(), kClassNames.end(), [&](const char* className) {
            return tavocal::contains(displayName, className) &&
                   !contains(primariesSeen, className);
        });
    if (offered != kClassNames.end()) {
        accepted = process->setStageIndicator(sensor);
    }
    if (sensor->isPrimary()) {
        primariesSeen.push_back(displayName);
    }
    return accepted;
}

// Stages are found by gravity, also where no accelerometer is calibrated.
void SensorManager::addAccelerometer() {
    const auto accelerometer = makeSensor({kAccelerometerType, 0, 0, 0, 0});
    accelerometer->setManager(this);
    sensors.push_back(accelerometer);
    process->setStageIndicator(accelerometer);
}

void SensorManager::stageChanged(const std::string& text) {
    for (const auto& sensor : sensors) {
        sensor->stageChanged(text);
    }
}

// ---- Replay ----

void SensorManager::loadDump(const std::string& folder, const std::string& prefix, bool offline) {
    platform::Console::instance().write("Loading data dump, this might take a while...\n");
    samples = CsvParser().readFromFile(dumpTemplate(folder, prefix), sensors, offline);
}

void SensorManager::playData() {
    std::vector<const std::vector<Sample>*> streams;
    for (const auto& sensor : sensors) {
        const auto found = samples.find(sensor);
        streams.push_back(found == samples.end() ? nullptr : &found->second);
    }
    ReplayMerge merge(streams);
    std::size_t stream = 0;
    while (!allStagesDone) {
        const Sample* sample = merge.next(stream);
        if (sample == nullptr) {
            break;
        }
        if (!replaySample(*sensors[stream], *sample)) {
            return;
        }
    }
    const bool needsAllStages = process->runType == RunCommand::Calibrate ||
                                process->runType == RunCommand::CalibrateAls;
    if (needsAllStages && process->stagesDone != process->stageCount) {
        throw CalibrationException(
            "Unexpected data dump size. Not enough data for completing the calibration process");
    }
    checkDataStreamingValidity();
}

// False if a sensor or the sequence can't go on: the run then works with what got through.
bool SensorManager::replaySample(Sensor& sensor, const Sample& sample) {
    try {
        deliver(sensor, sample);
    } catch (const SamplingException& exception) {
        TAVOCAL_LOG(Debug, "SensorManager::playData", "Caught exception from dataRecieved");
        stages.stageFailed(exception.what());
        throw;
    } catch (const CalibrationException& exception) {
        TAVOCAL_LOG(Debug, "SensorManager::playData",
                    "Caught exception from dataRecieved, aborting");
        stages.stageFailed(exception.what());
        return false;
    }
    if (takeStageEnd(sensor)) {
        finishStep();
    }
    return true;
}

// ---- Samples and stages ----

void SensorManager::deliver(Sensor& sensor, const Sample& sample) {
    if (sensor.dataRecieved(sample) && process->isStageIndicator(sensor)) {
        process->CalibrationControl(sample);
    }
}

bool SensorManager::takeStageEnd(const Sensor& sensor) {
    if (process->isUserPaced() || !process->isStageIndicator(sensor)) {
        return false;
    }
    const bool ended = process->canMoveNext;
    process->canMoveNext = false;
    return ended;
}

void SensorManager::finishStep() {
    if (process->runType == RunCommand::MagEnvironmentTest) {
        ++process->stagesDone;
        return;
    }
    if (process->stagesDone == process->stageCount) {
        allStagesDone = true;
    }
    stages.stageDone(true);
}

// ---- Validity of the streams ----

void SensorManager::checkDataStreamingValidity() const {
    constexpr const char* kName = "SensorManager::checkDataStreamingValidity";
    TAVOCAL_LOG(Debug, kName, "Started checking validity");
    if (process->runType == RunCommand::MagEnvironmentTest) {
        return;
    }
    if (!allStagesDone || !stages.status()) {
        TAVOCAL_LOG(Debug, kName, "Leaving data streaming validity - state invalid");
        return;
    }
    const Sensor& indicator = findIndicator();
    const double lastTime = lastSampleOf(indicator)->timestamp;
    std::string names;
    for (const auto& sensor : sensors) {
        if (sensor.get() != &indicator && !endsNear(lastTime, *sensor)) {
            names += (names.empty() ? "" : ", ") + sensor->getDisplayName();
        }
    }
    if (!names.empty()) {
        TAVOCAL_LOG(Debug, kName, "throwing from checking validity");
        throw CalibrationException(
            "Data streaming rate was invalid. Not enough data points were sampled for " + names);
    }
    TAVOCAL_LOG(Debug, kName, "Finished checking validity");
}

bool SensorManager::endsNear(double lastTime, const Sensor& sensor) const {
    constexpr const char* kName = "SensorManager::checkDataStreamingValidity";
    const Sample* last = lastSampleOf(sensor);
    if (last == nullptr) {
        TAVOCAL_LOG(Debug, kName, "not OK since dataDump");
        return false;
    }
    const double delta = std::trunc(lastTime - last->timestamp);
    if (std::abs(delta) > kLargestLag) {
        TAVOCAL_LOG(Debug, kName,
                    "not OK since delta: " + std::to_string(static_cast<long long>(delta)) +
                        sensor.getDisplayName());
        return false;
    }
    return true;
}

// The last stage indicator, which must have delivered.
const Sensor& SensorManager::findIndicator() const {
    const Sensor* indicator = nullptr;
    for (const auto& sensor : sensors) {
        if (!process->isStageIndicator(*sensor)) {
            continue;
        }
        indicator = sensor.get();
        if (lastSampleOf(*indicator) == nullptr) {
            throw CalibrationException("No data was sampled for " + indicator->getDisplayName());
        }
    }
    if (indicator == nullptr) {
        throw CalibrationException("Error. stageIndicatorSensor is NULL");
    }
    return *indicator;
}

// The last sample that the sensor took into account, or null.
const Sample* SensorManager::lastSampleOf(const Sensor& sensor) const {
    const auto found = std::find_if(samples.begin(), samples.end(), [&sensor](const auto& entry) {
        return entry.first.get() == &sensor;
    });
    const std::uint32_t count = sensor.getSampleCount();
    if (found == samples.end() || count == 0 || count > found->second.size()) {
        return nullptr;
    }
    return &found->second[count - 1];
}

// ---- What the sensors ask ----

RunCommand SensorManager::runType() const {
    return process->runType;
}

FlowType SensorManager::flowType() const {
    return process->flowType;
}

int SensorManager::stageCount() const {
    return process->stageCount;
}

const std::vector<double>& SensorManager::segmentTimes() const {
    return process->segmentTimes;
}

const std::vector<int>& SensorManager::lightSegments() const {
    return process->lightSegments;
}

bool SensorManager::isInteractive() const {
    return process->isInteractive();
}

void SensorManager::addFailure(int kind, const std::string& sensorName) {
    failures.addFailure(kind, sensorName);
}

}  // namespace tavocal
