#pragma once

#include <string>
#include <utility>
#include <vector>

#include "process/Process.h"
#include "sampling/FailureSummary.h"
#include "sampling/SamplingState.h"
#include "sensors/model/RunContext.h"

namespace tavocal {

// Answers what the sensors ask of their run, from its sequence, and keeps what they have judged and
// what the operator should look at. REQUIRES: the run has a sequence.
class RunAnswers : public RunContext {
  public:
    // `samplingState` must outlive this object.
    explicit RunAnswers(const SamplingState& samplingState) : state(samplingState) {}

    RunCommand runType() const override { return state.process->runType; }
    FlowType flowType() const override { return state.process->flowType; }
    int stageCount() const override { return state.process->stageCount; }
    const std::vector<double>& segmentTimes() const override { return state.process->segmentTimes; }
    const std::vector<int>& lightSegments() const override { return state.process->lightSegments; }
    bool isInteractive() const override { return state.process->isInteractive(); }
    void judged(Judgement judgement) override { judgementList.push_back(std::move(judgement)); }
    void addFailure(FailureKind kind, const std::string& sensorName) override {
        failures.addFailure(kind, sensorName);
    }

    // What the run has judged up to now, in order. Main thread.
    const std::vector<Judgement>& judgements() const { return judgementList; }
    std::string failureSummary() const { return failures.text(); }

  private:
    const SamplingState& state;
    std::vector<Judgement> judgementList;
    FailureSummary failures;
};

}  // namespace tavocal
