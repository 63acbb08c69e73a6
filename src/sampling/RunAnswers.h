#pragma once

#include <string>

#include "sampling/FailureSummary.h"
#include "sensors/model/RunContext.h"

namespace tavocal {

struct SamplingState;

// Answers what the sensors ask of their run, from its sequence, and gathers their failures for the
// operator. No sensor may ask before the run has a sequence.
class RunAnswers : public RunContext {
  public:
    // `state` must outlive this object.
    explicit RunAnswers(const SamplingState& state);

    RunCommand runType() const override;
    FlowType flowType() const override;
    int stageCount() const override;
    const std::vector<double>& segmentTimes() const override;
    const std::vector<int>& lightSegments() const override;
    bool isInteractive() const override;
    void addFailure(int kind, const std::string& sensorName) override;

    std::string failureSummary() const { return failures.text(); }

  private:
    const SamplingState& state;
    FailureSummary failures;
};

}  // namespace tavocal
