#include "process/AlsProcess.h"

#include <cmath>

#include "base/Failures.h"
#include "base/Text.h"
#include "base/TextToNumber.h"
#include "log/Logger.h"
#include "numerics/Sample.h"
#include "platform/Console.h"
#include "sensors/light/AmbientLight.h"
#include "vocabulary/SensorTypes.h"

namespace tavocal {

namespace {

constexpr const char* kControlName = "AlsProcess::CalibrationControl";

constexpr int kDefaultStageCount = 3;
constexpr int kFewestStages = 1;
// A sample must differ by more than this from the level before to count as changed light, in lux.
constexpr double kChangeThreshold = 5.0;
// Largest standard deviation of a stable window, in lux.
constexpr double kStableDeviation = 1.0;
// The first samples of a stable window don't count for the stage.
constexpr int kSettleSamples = 20;

int enteredNumber(const std::string& line) {
    try {
        return parseInt(line);
    } catch (const CalibrationException&) {
        throw CalibrationException("Invalid number was entered");
    }
}

// The empty line at the end of input, which is no good answer to any question.
std::string readOperator() {
    std::string line;
    platform::Console::instance().readLine(line);
    return line;
}

int askStageCount() {
    platform::print("Enter the number of steps to calibrate, valid number should be bigger than " +
                    std::to_string(kFewestStages) + "\n");
    return enteredNumber(readOperator());
}

int bufferedCount(const AmbientLight& sensor) {
    return static_cast<int>(sensor.getSampleCount());
}

}  // namespace

AlsProcess::AlsProcess(bool isInteractiveFlow) : interactive(isInteractiveFlow) {
    stageCount = kDefaultStageCount;
    runType = RunCommand::CalibrateAls;
    stagesDone = 0;
}

void AlsProcess::loadConfiguration(const std::string& path) {
    loadAlsConfig(path, config);
}

// More stages than a series of levels can have are refused at once: nobody could complete them.
void AlsProcess::prepare() {
    stageCount = interactive ? askStageCount() : static_cast<int>(config.values.size());
    if (stageCount < kFewestStages || stageCount > kMostLightLevels) {
        throw CalibrationException("Invalid number of stages");
    }
    lightSegments.assign(2 * static_cast<std::size_t>(stageCount), 0);
}

bool AlsProcess::isInteractive() const {
    return interactive;
}

// ---- Sensors ----

bool AlsProcess::setStageIndicator(const std::shared_ptr<Sensor>& sensor) {
    lightIndicator = std::dynamic_pointer_cast<AmbientLight>(sensor);
    if (lightIndicator == nullptr) {
        throw CalibrationException(sensor->name + " is invalid type of stageIndicator");
    }
    return true;
}

void AlsProcess::addCalibratedSensor(const std::shared_ptr<Sensor>& sensor) {
    if (auto light = std::dynamic_pointer_cast<AmbientLight>(sensor)) {
        lightSensors.push_back(std::move(light));
    }
}

bool AlsProcess::isStageIndicator(const Sensor& sensor) const {
    return lightIndicator != nullptr && lightIndicator->getLuid() == sensor.getLuid();
}

std::vector<std::string> AlsProcess::requiredIndicatorTypes() const {
    return {kAmbientLightName};
}

void AlsProcess::passLevelsToSensor(Sensor& sensor) const {
    if (auto* light = dynamic_cast<AmbientLight*>(&sensor)) {
        light->lightLevels.insert(light->lightLevels.end(), config.values.begin(),
                                  config.values.end());
    }
}

// ---- Prompts ----

bool AlsProcess::needsUserInput() {
    return true;
}

int AlsProcess::configuredLevel() const {
    const auto step = static_cast<std::size_t>(currentStep);
    if (step >= config.values.size()) {
        throw CalibrationException("Invalid number of light values");
    }
    return config.values[step];
}

std::string AlsProcess::getInstructions(bool /*noEnter*/) {
    if (interactive) {
        return "Please change the light level to the next level. When done, enter the light level "
               "as read by your light meter";
    }
    return "Please change the light level to " + std::to_string(configuredLevel()) + " lux";
}

std::string AlsProcess::readUserInput() {
    std::string answer = interactive ? readOperator() : std::to_string(configuredLevel());
    levels.accept(enteredNumber(answer));
    return answer;
}

// ---- Detection ----

void AlsProcess::CalibrationControl(const Sample& sample) {
    const double v = sample.values[0];
    if (stagesDone > 0 && stagesDone < stageCount && !lightChangeSeen) {
        lookForChange(v);
    }
    if (stagesDone == 0 || lightChangeSeen) {
        watchStability(v);
    }
}

void AlsProcess::lookForChange(double value) {
    const std::size_t previous = 2 * static_cast<std::size_t>(stagesDone - 1);
    const int start = lightSegments.at(previous);
    const int end = lightSegments.at(previous + 1);
    // The newest sample of the previous stage stays out of the mean.
    const double mean = lightIndicator->sampleMean(start, end - start);
    lightChangeSeen = std::abs(value - mean) > kChangeThreshold;
    if (lightChangeSeen) {
        return;
    }
    ++changeWaitCount;
    if (!(changeWaitCount <= lightIndicator->sampleRate() * config.delayTime)) {
        throw SamplingException("A light level change was not detected for too long time");
    }
}

void AlsProcess::watchStability(double value) {
    const auto [window, limit] = lightIndicator->stabilityWindow();
    ++windowSampleCount;
    if (windowSampleCount < window) {
        return;
    }
    const int n = bufferedCount(*lightIndicator);
    if (!(lightIndicator->sampleStdDev(n - window, window) <= kStableDeviation)) {
        ++unstableWindowCount;
        if (unstableWindowCount > limit) {
            throw SamplingException("The light is not stable for too long time");
        }
        return;
    }
    TAVOCAL_LOG(Debug, kControlName, "Can move next");
    markStageEnd(n - window + kSettleSamples, n - 1);
    TAVOCAL_LOG(Debug, kControlName, "finished collecting; data is:" + fixedText(value) + "\n");
}

void AlsProcess::markStageEnd(int first, int last) {
    const std::size_t at = 2 * static_cast<std::size_t>(stagesDone);
    lightSegments.at(at) = first;
    lightSegments.at(at + 1) = last;
    ++stagesDone;
    canMoveNext = true;
    windowSampleCount = 0;
    changeWaitCount = 0;
    unstableWindowCount = 0;
    lightChangeSeen = false;
    if (interactive) {
        for (const auto& sensor : lightSensors) {
            sensor->waitingForInput = true;
        }
    }
}

// ---- End of the collection ----

void AlsProcess::finishCollection() {
    int shortest = 0;
    bool primaryShortest = false;
    for (const auto& sensor : lightSensors) {
        const int count = bufferedCount(*sensor);
        if (count < shortest || shortest == 0) {
            shortest = count;
            primaryShortest = sensor->isPrimary();
        }
    }
    int primaryExcess = 0;
    for (const auto& sensor : lightSensors) {
        const int excess = bufferedCount(*sensor) - shortest;
        if (sensor->isPrimary()) {
            primaryExcess = excess;
        }
        sensor->dropFirstSamples(excess);
    }
    if (!primaryShortest) {
        for (int& index : lightSegments) {
            index -= primaryExcess;
        }
    }
}

}  // namespace tavocal
