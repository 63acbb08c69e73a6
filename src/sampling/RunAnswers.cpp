#include "sampling/RunAnswers.h"

#include "process/Process.h"
#include "sampling/SamplingState.h"

namespace tavocal {

RunAnswers::RunAnswers(const SamplingState& samplingState) : state(samplingState) {}

RunCommand RunAnswers::runType() const {
    return state.process->runType;
}

FlowType RunAnswers::flowType() const {
    return state.process->flowType;
}

int RunAnswers::stageCount() const {
    return state.process->stageCount;
}

const std::vector<double>& RunAnswers::segmentTimes() const {
    return state.process->segmentTimes;
}

const std::vector<int>& RunAnswers::lightSegments() const {
    return state.process->lightSegments;
}

bool RunAnswers::isInteractive() const {
    return state.process->isInteractive();
}

void RunAnswers::addFailure(int kind, const std::string& sensorName) {
    failures.addFailure(kind, sensorName);
}

}  // namespace tavocal
