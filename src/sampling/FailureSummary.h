#pragma once

#include <map>
#include <string>

#include "base/Failures.h"

namespace tavocal {

// What the operator should look at after failed tests, by sensor. When two sensors both seem to
// read a wrong axis, the movement is the likelier cause, and one general entry takes the place of
// all others. Main thread, after sampling.
class FailureSummary {
  public:
    // `kind`: CheckCalibration or CheckAxisMapping.
    void addFailure(FailureKind kind, const std::string& sensorName);

    // One line per entry, ordered by name: the kind plus one, a tab, the name and what to check.
    std::string text() const;

  private:
    bool otherAxisFailure(const std::string& sensorName) const;

    std::map<std::string, FailureKind> failureKinds;
};

}  // namespace tavocal
