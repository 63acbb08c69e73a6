#include "sampling/SensorManager.h"

#include "process/Process.h"
#include "sampling/IndicatorHandOver.h"
#include "sensors/SensorFactory.h"
#include "sensors/model/Sensor.h"
#include "vocabulary/SensorTypes.h"

namespace tavocal {

void SensorManager::setSensors(const std::vector<std::shared_ptr<Sensor>>& runSensors) {
    state.sensors = runSensors;
    for (const auto& sensor : state.sensors) {
        sensor->setManager(&answers);
    }
}

void SensorManager::setProcess(const std::shared_ptr<Process>& runProcess) {
    state.process = runProcess;
    if (!offerIndicators(*state.process, state.sensors)) {
        addAccelerometer();
    }
    state.process->buildStages();
}

// Stages are found by gravity, also where no accelerometer is calibrated.
void SensorManager::addAccelerometer() {
    const auto accelerometer = makeSensor({kAccelerometerType, 0, 0, 0, 0});
    accelerometer->setManager(&answers);
    state.sensors.push_back(accelerometer);
    state.process->setStageIndicator(accelerometer);
}

// A failed step ends the run, so that its time base doesn't matter any more.
void SensorManager::waitForStepFinish(bool threeRotations) {
    if (state.process->isUserPaced()) {
        userSteps.waitForKey(threeRotations);
    } else {
        state.stages.waitForStage();
    }
    if (!state.process->keepsTimeBase()) {
        live.dropTimeBase();
    }
}

void SensorManager::stageChanged(const std::string& text) {
    for (const auto& sensor : state.sensors) {
        sensor->stageChanged(text);
    }
}

}  // namespace tavocal
