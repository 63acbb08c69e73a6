#include "sampling/SamplingState.h"

#include <utility>

#include "log/Logger.h"
#include "process/Process.h"
#include "sensors/model/Sensor.h"

namespace tavocal {

void SamplingState::deliver(Sensor& sensor, const Sample& sample) {
    if (sensor.dataRecieved(sample) && process->isStageIndicator(sensor)) {
        process->CalibrationControl(sample);
    }
}

void SamplingState::passStageEnd(const Sensor& sensor, const char* caller) {
    if (process->isUserPaced() || !process->isStageIndicator(sensor)) {
        return;
    }
    if (std::exchange(process->canMoveNext, false)) {
        TAVOCAL_LOG(Debug, caller, "SensorManager: Can move next!!");
        finishStep();
    }
}

void SamplingState::finishStep() {
    if (process->runType == RunCommand::MagEnvironmentTest) {
        ++process->stagesDone;
        return;
    }
    if (process->stagesDone == process->stageCount) {
        allStagesDone = true;
    }
    stages.stageDone(true);
}

}  // namespace tavocal
