#include "process/NewMotionProcess.h"

#include <algorithm>

#include "base/Failures.h"
#include "base/Text.h"
#include "numerics/Sample.h"
#include "platform/Console.h"
#include "sensors/inertial/InertialSensor.h"
#include "sensors/model/StageSegments.h"
#include "vocabulary/SensorTypes.h"

namespace tavocal {

namespace {

// A stage counts as still when its last second was.
constexpr double kStageLength = 1000.0;

bool sameLuid(const std::shared_ptr<InertialSensor>& indicator, const Sensor& sensor) {
    return indicator != nullptr && indicator->getLuid() == sensor.getLuid();
}

}  // namespace

NewMotionProcess::NewMotionProcess(FlowType flow) {
    flowType = flow;
}

bool NewMotionProcess::setStageIndicator(const std::shared_ptr<Sensor>& sensor) {
    const auto inertial = std::dynamic_pointer_cast<InertialSensor>(sensor);
    if (inertial != nullptr && contains(sensor->name, kAccelerometerName)) {
        accelerometerIndicator = inertial;
    } else if (inertial != nullptr && contains(sensor->name, kGyroscopeName)) {
        gyroscopeIndicator = inertial;
    } else if (inertial != nullptr && contains(sensor->name, kMagnetometerName)) {
        magnetometerIndicator = inertial;
    } else {
        throw CalibrationException(sensor->name + " is invalid type of stageIndicator");
    }
    switch (flowType) {
        case FlowType::MagAccuracyTest:
            return magnetometerIndicator != nullptr;
        case FlowType::Minimal:
            return true;
        default:
            return accelerometerIndicator != nullptr;
    }
}

void NewMotionProcess::buildStages() {
    if (flowType == FlowType::Full && accelerometerIndicator != nullptr &&
        gyroscopeIndicator == nullptr && magnetometerIndicator == nullptr) {
        flowType = FlowType::AccelerometerOnly;
    }
    stages = motionStages(flowType, magnetometerIndicator != nullptr);
    stageCount = stages.stageCount;
    segmentTimes.assign(2 * static_cast<std::size_t>(stageCount), 0.0);
}

std::vector<std::string> NewMotionProcess::requiredIndicatorTypes() const {
    return {kAccelerometerName, kGyroscopeName, kMagnetometerName};
}

bool NewMotionProcess::isStageIndicator(const Sensor& sensor) const {
    return sameLuid(accelerometerIndicator, sensor) || sameLuid(magnetometerIndicator, sensor) ||
           sameLuid(gyroscopeIndicator, sensor);
}

// ---- Prompts ----

bool NewMotionProcess::needsUserInput() {
    return currentStep == 0;
}

std::string NewMotionProcess::readUserInput() {
    if (currentStep != 0) {
        throw CalibrationException("Internal error");
    }
    char key = 0;
    platform::Console::instance().readCharacter(key);
    return {};
}

bool NewMotionProcess::startsWithPosition() const {
    return flowType == FlowType::AccelerometerOnly || currentStep % 2 == 0;
}

std::string NewMotionProcess::getInstructions(bool noEnter) {
    const auto s = static_cast<std::size_t>(currentStep);
    std::string text =
        "Step " + std::to_string(currentStep + 1) + " out of " + std::to_string(stageCount) + ".\n";
    if (stages.stagePositions.empty()) {
        text +=
            (startsWithPosition() ? "Place the device screen's " : "Slowly, rotate the device ") +
            stages.stageInstructions.at(s);
    } else if (s == 0) {
        text += "Place the device screen's " + stages.stagePositions.at(0);
    } else {
        text += "Slowly, rotate the device " + stages.stageInstructions.at(s - 1) +
                "\nAt the end of this stage, the device's " + stages.stagePositions.at(s);
    }
    text += "\nHold system in current position";
    if (s == 0) {
        text += "\nNOTE:\nDevice should be placed in tablet mode, screen facing up";
        text += noEnter ? "\n" : "\nPress Enter when done";
    }
    return text;
}

// ---- Detection ----

void NewMotionProcess::CalibrationControl(const Sample& sample) {
    const double t = sample.timestamp;
    if (stagesDone == stageCount) {
        return;
    }
    if (flowType == FlowType::Minimal) {
        controlMinimal(t);
        return;
    }
    if (firstControlCall) {
        begin();
    }
    if (!holdPassed(t)) {
        return;
    }
    switch (detectionState) {
        case DetectionState::StillBeforeRotation:
            waitForStillness(t);
            break;
        case DetectionState::Rotation:
            waitForRotation(t);
            break;
        case DetectionState::StillAfterMove:
            waitForMoveEnd(t);
            break;
        case DetectionState::LeavingPosition:
            waitForMove(t);
            break;
    }
}

void NewMotionProcess::controlMinimal(double t) {
    if (t - lastEventTime >= kStageLength) {
        canMoveNext = true;
        stagesDone += 2;
    }
}

void NewMotionProcess::begin() {
    detectionState = stateInPosition();
    firstControlCall = false;
    stagesDone = 0;
}

NewMotionProcess::DetectionState NewMotionProcess::stateInPosition() const {
    return flowType == FlowType::Full ? DetectionState::StillBeforeRotation
                                      : DetectionState::StillAfterMove;
}

bool NewMotionProcess::holdPassed(double t) const {
    return !(t - lastEventTime < extraHoldTime + kStageLength);
}

void NewMotionProcess::waitForStillness(double t) {
    if (!allIndicatorsStill()) {
        return;
    }
    markStageEnd(t);
    detectionState = DetectionState::Rotation;
    if (gyroscopeIndicator != nullptr) {
        gyroscopeIndicator->captureRotationBias();
    }
    extraHoldTime = 0.0;
}

void NewMotionProcess::waitForRotation(double t) {
    if (t - lastRotationPoll < static_cast<double>(rotationPollPeriod)) {
        return;
    }
    lastRotationPoll = t;
    if (rotationSeen()) {
        detectionState = DetectionState::StillAfterMove;
        lastEventTime = t;
    }
}

void NewMotionProcess::waitForMoveEnd(double t) {
    if (!allIndicatorsStill()) {
        return;
    }
    markStageEnd(t);
    detectionState = DetectionState::LeavingPosition;
    for (const auto& indicator :
         {accelerometerIndicator, gyroscopeIndicator, magnetometerIndicator}) {
        if (indicator != nullptr) {
            indicator->setReferenceVector(indicator->lastWindowMedian());
        }
    }
}

void NewMotionProcess::waitForMove(double t) {
    if (!movedFromReference()) {
        return;
    }
    detectionState = stateInPosition();
    lastEventTime = t;
}

bool NewMotionProcess::allIndicatorsStill() {
    const bool firstStage = stagesDone == 0;
    if (accelerometerIndicator != nullptr && !accelerometerIndicator->isStill(firstStage)) {
        return false;
    }
    return secondIndicator() == nullptr || secondIndicator()->isStill(firstStage);
}

InertialSensor* NewMotionProcess::secondIndicator() const {
    return gyroscopeIndicator != nullptr ? gyroscopeIndicator.get() : magnetometerIndicator.get();
}

bool NewMotionProcess::rotationSeen() {
    if (gyroscopeIndicator != nullptr) {
        return gyroscopeIndicator->rotationDetected(0.0);
    }
    return magnetometerIndicator != nullptr &&
           magnetometerIndicator->rotationDetected(lastEventTime);
}

bool NewMotionProcess::movedFromReference() {
    const auto& indicator =
        flowType == FlowType::MagAccuracyTest ? magnetometerIndicator : accelerometerIndicator;
    return indicator != nullptr && indicator->movedFromReference();
}

void NewMotionProcess::markStageEnd(double t) {
    const std::size_t at = 2 * static_cast<std::size_t>(stagesDone);
    segmentTimes.at(at) = t - kStageLength;
    segmentTimes.at(at + 1) = t;
    ++stagesDone;
    lastEventTime = t;
    canMoveNext = true;
    if (stagesDone == stageCount) {
        finalizeSegments();
    }
}

// Lengthens stages toward the motion that ended them, so that the sensors get more than the second
// in which a stage was recognised. In the Full flow a still stretch that ended a turn keeps its
// length.
void NewMotionProcess::finalizeSegments() {
    const std::size_t step = positionStride(segmentTimes.size());
    for (std::size_t i = 1; i < segmentTimes.size(); i += step) {
        segmentTimes[i] += extensionOf(segmentTimes[i]);
        if (i + 1 < segmentTimes.size() && segmentTimes[i] > segmentTimes[i + 1]) {
            throw CalibrationException("segmentation error");
        }
    }
}

double NewMotionProcess::extensionOf(double stageEnd) const {
    const double a =
        accelerometerIndicator != nullptr ? accelerometerIndicator->stillExtension(stageEnd) : 0.0;
    const double b = secondIndicator() != nullptr ? secondIndicator()->stillExtension(stageEnd) : a;
    return accelerometerIndicator != nullptr ? std::min(a, b) : b;
}

}  // namespace tavocal
