#include "sensors/model/Verdict.h"

#include <utility>

#include "sensors/model/RunContext.h"
#include "sensors/model/Sensor.h"

namespace tavocal {

Verdict::Verdict(Sensor& judged, const char* checkName) : sensor(judged), check(checkName) {}

void Verdict::judge(Judgement judgement, const std::string& parameter, const std::string& reason,
                    Unit unit) {
    judgement.sensor = sensor.getDisplayName();
    judgement.check = check;
    judgement.unit = unit;
    judgement.parameter = parameter;
    judgement.reason = reason;
    if (!judgement.passed) {
        if (!anyFailed) {
            sensor.report.setAttribute("FailureParameter", judgement.parameter);
        }
        anyFailed = true;
        failureReasons += judgement.reason;
    }
    sensor.run().judged(std::move(judgement));
}

void Verdict::judgeFinite(int countNotFinite) {
    judge(refusedAbove("numbers that are not finite", countNotFinite, 0.0), "Not finite",
          "Calculated calibration is not finite.\n");
}

}  // namespace tavocal
