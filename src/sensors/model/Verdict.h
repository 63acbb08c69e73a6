#pragma once

#include <string>

#include "vocabulary/Judgement.h"

namespace tavocal {

class Sensor;

// What a gate finds about one sensor. Every judgement goes to the run's list; of those that failed
// the report names the first, and the reasons tell them all. Main thread.
class Verdict {
  public:
    // `judged`, which needs a run, and `check`, the name of the gate, must outlive this object.
    Verdict(Sensor& judged, const char* check);

    // Takes a judgement: `parameter` names it in the report, `reason` tells its failure.
    void judge(Judgement judgement, const std::string& parameter, const std::string& reason,
               Unit unit = Unit::unknown);
    // The check that lets no result pass which has numbers that are not finite. Every comparison
    // with a NaN is false, so that no other check of a gate refuses one.
    void judgeFinite(int countNotFinite);

    bool failed() const { return anyFailed; }
    // The reasons of the failed ones, one behind the other.
    const std::string& reasons() const { return failureReasons; }

  private:
    Sensor& sensor;
    const char* const check;
    bool anyFailed = false;
    std::string failureReasons;
};

}  // namespace tavocal
