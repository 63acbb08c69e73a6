#pragma once

#include <string>
#include <vector>

#include "base/Failures.h"
#include "vocabulary/Judgement.h"
#include "vocabulary/RunTypes.h"

namespace tavocal {

// What a sensor may ask of the run that it takes part in. The references stay good for the run;
// what they refer to is complete once sampling has stopped.
class RunContext {
  public:
    virtual ~RunContext() = default;

    virtual RunCommand runType() const = 0;
    virtual FlowType flowType() const = 0;
    virtual int stageCount() const = 0;

    // Begin and end of each stage in milliseconds, two entries per stage.
    virtual const std::vector<double>& segmentTimes() const = 0;

    // First and last sample index of each light level, both included, two entries per level.
    virtual const std::vector<int>& lightSegments() const = 0;

    // An operator types each light level, and samples wait for the answer.
    virtual bool isInteractive() const = 0;

    // Takes what was judged, passed or failed. Main thread.
    virtual void judged(Judgement judgement) = 0;

    // Records a failed test for the operator's summary. Main thread.
    virtual void addFailure(FailureKind kind, const std::string& sensorName) = 0;
};

}  // namespace tavocal
