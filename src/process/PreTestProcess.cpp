#include "process/PreTestProcess.h"

#include <array>

#include "platform/Console.h"
#include "sensors/model/Sensor.h"
#include "vocabulary/SensorTypes.h"

namespace tavocal {

namespace {

constexpr std::array<const char*, 3> kRotationTexts = {
    "360 degrees around X axis", "360 degrees around Y axis", "360 degrees around Z axis"};
constexpr int kSteps = 4;  // the rotations and a walk

}  // namespace

PreTestProcess::PreTestProcess() {
    stageCount = kSteps;
    runType = RunCommand::MagEnvironmentTest;
    segmentTimes.assign(2 * kSteps, 0.0);
}

std::string PreTestProcess::getInstructions(bool /*noEnter*/) {
    const auto s = static_cast<std::size_t>(currentStep);
    std::string text;
    if (s < kRotationTexts.size()) {
        threeRotationsStage = s == kRotationTexts.size() - 1;
        text = std::string("Slowly rotate the device ") + kRotationTexts[s];
    } else {
        threeRotationsStage = false;
        text = "Slowly move the device in a rectangle, keeping the same heading all the time";
    }
    return text + (s == 0 ? "\nPress Enter to signal start and finish" : "\nPress Enter when done");
}

std::string PreTestProcess::readUserInput() {
    char key = 0;
    platform::Console::instance().readCharacter(key);
    platform::print("User pressed for signal start...\n");
    waitForStart = false;
    return {};
}

bool PreTestProcess::isStageIndicator(const Sensor& sensor) const {
    return stageIndicator != nullptr && sensor.getLuid() == stageIndicator->getLuid();
}

std::vector<std::string> PreTestProcess::requiredIndicatorTypes() const {
    return {kMagnetometerName};
}

bool PreTestProcess::setStageIndicator(const std::shared_ptr<Sensor>& sensor) {
    stageIndicator = sensor;
    return true;
}

}  // namespace tavocal
