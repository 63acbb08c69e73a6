#include "sampling/SensorManager.h"

#include <algorithm>
#include <array>
#include <chrono>

#include "base/Failures.h"
#include "base/Text.h"
#include "firmware/KeluBase.h"
#include "firmware/MakeKelu.h"
#include "firmware/PNRRecord.h"
#include "firmware/SDT.h"
#include "formats/CsvParser.h"
#include "formats/DumpPaths.h"
#include "log/Logger.h"
#include "platform/Console.h"
#include "process/Process.h"
#include "sampling/ReplayMerge.h"
#include "sampling/StreamValidity.h"
#include "sensors/SensorFactory.h"
#include "sensors/model/Sensor.h"
#include "vocabulary/SensorTypes.h"

namespace tavocal {

namespace {

constexpr std::array<const char*, 4> kClassNames = {kAccelerometerName, kGyroscopeName,
                                                    kMagnetometerName, kAmbientLightName};

// Report intervals in milliseconds.
constexpr std::uint32_t kMotionInterval = 10;
constexpr std::uint32_t kLightInterval = 20;

constexpr std::chrono::milliseconds kImpatientTimeout{500};

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
            return tavocal::contains(displayName, className) && !contains(primariesSeen, className);
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
    const bool needsAllStages =
        process->runType == RunCommand::Calibrate || process->runType == RunCommand::CalibrateAls;
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
    checkStreamsLasted(*process, sensors, samples);
    TAVOCAL_LOG(Debug, kName, "Finished checking validity");
}

// ---- Live sampling ----

void SensorManager::setSamplingInterval(int milliseconds) {
    samplingInterval = milliseconds;
}

void SensorManager::prepareSensors() {
    for (const auto& sensor : sensors) {
        sensorsByLuid[sensor->getLuidText()] = sensor;
        sensor->calcReverseSdt();
    }
    chooseReportInterval();
}

void SensorManager::chooseReportInterval() {
    if (samplingInterval) {
        reportInterval = static_cast<std::uint32_t>(std::max(*samplingInterval, 0));
    } else if (process->runType == RunCommand::CalibrateAls) {
        const std::uint32_t largest = largestMinimalInterval();
        if (largest == 0) {
            platform::Console::instance().write(
                "failed to get minimal reporting interval from sensor, will use default sampling "
                "interval: " +
                std::to_string(kLightInterval) + "ms\n");
        }
        reportInterval = std::max(largest, kLightInterval);
    } else {
        reportInterval = kMotionInterval;
    }
}

// 0 if a sensor doesn't tell.
std::uint32_t SensorManager::largestMinimalInterval() const {
    std::uint32_t largest = 0;
    bool queryFailed = false;
    for (const auto& sensor : sensors) {
        try {
            largest = std::max(largest, SDT().getMinReportInterval(sensor->getLuid()));
        } catch (const SmhiException&) {
            queryFailed = true;
        }
    }
    return queryFailed ? 0 : largest;
}

std::vector<SampledSensor> SensorManager::sampledSensors() const {
    std::vector<SampledSensor> sampled;
    for (const auto& sensor : sensors) {
        sampled.push_back({sensor->getLuid(), sensor->getDisplayName()});
    }
    return sampled;
}

void SensorManager::startSampling() {
    allStagesDone = false;
    stages.reset();
    try {
        SDT().startSampling(sampledSensors(), reportInterval, 0.0);
        TAVOCAL_LOG(Debug, "SensorManager::startSampling",
                    "Report Interval is " + std::to_string(reportInterval));
        if (!PNRRecord::instance().start(*this)) {
            throw CalibrationException("Failed to start PNRRecord");
        }
    } catch (const SmhiException&) {
        throw CalibrationException("Failed to start sampling");
    }
}

void SensorManager::stopSampling() {
    TAVOCAL_LOG(Insane, "SensorManager::stopSampling", "Enter SensorManager::stopSampling()");
    if (sensors.empty()) {
        throw CalibrationException("No sensors were set for sampling");
    }
    bool stopped = false;
    try {
        stopped = PNRRecord::instance().stop();
        PNRRecord::instance().endSession();
        // A firmware that did not end the session may not answer at all.
        SDT firmware = stopped ? SDT() : SDT([] { return makeKelu(kImpatientTimeout); });
        firmware.stopSampling(sampledSensors());
    } catch (const SmhiException&) {
        stopped = false;
    }
    if (!stopped) {
        throw CalibrationException("Failed to stop sampling");
    }
    checkDataStreamingValidity();
    TAVOCAL_LOG(Insane, "SensorManager::stopSampling", "Exit SensorManager::stopSampling()");
}

std::optional<SampleReceiver::Target> SensorManager::findSensor(const std::string& luidText) {
    const auto found = sensorsByLuid.find(luidText);
    if (found == sensorsByLuid.end()) {
        return std::nullopt;
    }
    return Target{found->second, found->second->rawDivisor};
}

void SensorManager::handleData(const std::shared_ptr<Sensor>& sensor,
                               std::span<const double> values, double timeMs) {
    if (values.size() != static_cast<std::size_t>(sensor->valuesPerSample)) {
        return;
    }
    try {
        const std::optional<double> timestamp = liveTimeBase.place(*sensor, timeMs, sensors);
        if (timestamp) {
            Sample sample{*timestamp, Vector(values.data(), static_cast<int>(values.size()))};
            sensor->reverseStaticCalibration(sample);
            storeLive(sensor, sample);
        }
    } catch (const std::runtime_error& exception) {
        // CalibrationException, MathException or SamplingException: the stage has failed, and the
        // session goes on until the main thread stops it.
        TAVOCAL_LOG(Debug, "SensorManager::handleData",
                    "Caught exception from dataRecieved, aborting");
        stages.stageFailed(exception.what());
        return;
    }
    if (takeStageEnd(*sensor)) {
        TAVOCAL_LOG(Debug, "SensorManager::handleData", "SensorManager: Can move next!!");
        finishStep();
    }
}

void SensorManager::storeLive(const std::shared_ptr<Sensor>& sensor, const Sample& sample) {
    const std::lock_guard<std::mutex> lock(dataMutex);
    samples[sensor].push_back(sample);
    deliver(*sensor, sample);
}

void SensorManager::stageDone(bool status) {
    stages.stageDone(status);
}

// ---- Steps ----

void SensorManager::waitForStepFinish(bool threeRotations) {
    if (process->isUserPaced()) {
        waitForKey(threeRotations);
    } else {
        stages.waitForStage();
    }
}

void SensorManager::waitForKey(bool threeRotations) {
    stages.beginUserStage();
    char key = 0;
    platform::Console::instance().readCharacter(key);
    std::shared_ptr<Sensor> indicator;
    for (const auto& sensor : sensors) {
        if (process->isStageIndicator(*sensor)) {
            indicator = sensor;
        }
    }
    if (indicator == nullptr) {
        throw CalibrationException("Error. stageIndicatorSensor is NULL");
    }
    std::size_t stored = 0;
    {
        const std::lock_guard<std::mutex> lock(dataMutex);
        stored = samples[indicator].size();
    }
    userSteps.finish(*indicator, stored, threeRotations);
    finishStep();
    stages.finishUserStage();
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

void SensorManager::judged(Judgement judgement) {
    judgementList.push_back(std::move(judgement));
}

void SensorManager::addFailure(FailureKind kind, const std::string& sensorName) {
    failures.addFailure(kind, sensorName);
}

}  // namespace tavocal
