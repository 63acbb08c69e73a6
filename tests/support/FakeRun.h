#pragma once

#include <string>
#include <utility>
#include <vector>

#include "sensors/model/RunContext.h"

namespace tavocal::test {

// A run that says what a test wants it to say; no sampling stands behind it. It must outlive the
// sensors that it is given to.
class FakeRun : public RunContext {
  public:
    explicit FakeRun(FlowType flow, RunCommand command = RunCommand::Calibrate)
        : type(command), flowKind(flow) {}

    RunCommand runType() const override { return type; }
    FlowType flowType() const override { return flowKind; }
    int stageCount() const override { return stages; }
    const std::vector<double>& segmentTimes() const override { return times; }
    const std::vector<int>& lightSegments() const override { return segments; }
    bool isInteractive() const override { return interactive; }
    void judged(Judgement judgement) override { judgements.push_back(std::move(judgement)); }
    void addFailure(FailureKind kind, const std::string& sensorName) override {
        failures.emplace_back(static_cast<int>(kind), sensorName);
    }

    RunCommand type;
    FlowType flowKind;
    int stages = 4;
    std::vector<double> times;
    std::vector<int> segments;
    bool interactive = false;
    std::vector<Judgement> judgements;
    std::vector<std::pair<int, std::string>> failures;
};

}  // namespace tavocal::test
