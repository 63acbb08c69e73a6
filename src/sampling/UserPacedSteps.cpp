#include "sampling/UserPacedSteps.h"

#include <string>

#include "base/Failures.h"
#include "base/Text.h"
#include "platform/Console.h"
#include "sampling/IndicatorHandOver.h"
#include "sampling/SamplingState.h"
#include "sensors/model/Sensor.h"
#include "vocabulary/SensorTypes.h"

namespace tavocal {

namespace {

constexpr std::size_t kRotations = 3;

void require(bool followed, const char* phase) {
    if (!followed) {
        throw CalibrationException(std::string("Data collected during ") + phase +
                                   " phase in mag environment test is abnormal. Make sure the "
                                   "movement instructions were followed.");
    }
}

bool isMagnetometer(const Sensor& sensor) {
    return contains(sensor.getDisplayName(), kMagnetometerName);
}

}  // namespace

UserPacedSteps::UserPacedSteps(SamplingState& samplingState) : state(samplingState) {}

void UserPacedSteps::waitForKey(bool threeRotations) {
    state.stages.beginUserStage();
    char key = 0;
    platform::Console::instance().readCharacter(key);
    const auto indicator = lastIndicator(*state.process, state.sensors);
    {
        const std::lock_guard<std::mutex> lock(state.dataMutex);
        stepBoundaries.push_back(static_cast<std::uint32_t>(state.samples[indicator].size()));
    }
    finish(*indicator, threeRotations);
    state.finishStep();
    state.stages.finishUserStage();
}

void UserPacedSteps::finish(Sensor& indicator, bool threeRotations) {
    if (isMagnetometer(indicator)) {
        checkMovement(indicator);
    }
    platform::print("User pressed to signal end\n");
    if (threeRotations) {
        indicator.userSignalledEnd();
        require(
            !isMagnetometer(indicator) || indicator.checkMagPreTest_threeRotations(stepBoundaries),
            "three rotation");
    }
}

void UserPacedSteps::checkMovement(Sensor& indicator) const {
    const std::size_t count = stepBoundaries.size();
    if (count > kRotations) {
        require(indicator.checkMagPreTest_translation(), "translation");
        return;
    }
    const int begin = count < 2 ? 0 : static_cast<int>(stepBoundaries[count - 2]);
    const int last = static_cast<int>(stepBoundaries.back()) - 1;
    int axis = 0;
    require(indicator.checkMagPreTest_singleRotation(begin, last, axis), "rotation");
}

}  // namespace tavocal
