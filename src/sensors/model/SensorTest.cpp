#include "sensors/model/SensorTest.h"

#include <utility>

#include "base/Text.h"
#include "sensors/model/RunContext.h"
#include "sensors/model/Sensor.h"

namespace tavocal {

SensorTest::SensorTest(Sensor& judged, const char* testName, bool inSubtree)
    : sensor(judged), name(testName), hasSubtree(inSubtree) {
    if (hasSubtree) {
        sensor.report.beginSubtree(name);
    }
}

SensorTest::~SensorTest() {
    if (hasSubtree) {
        sensor.report.endSubtree();
    }
}

void SensorTest::beginStep(const std::string& title, int number) {
    sensor.report.addComment(title + " " + std::to_string(number));
    stage = number;
}

bool SensorTest::judge(Judgement judgement, const TestTexts& texts) {
    sensor.report.addVector(judgement.measured, texts.measuredName, texts.measuredComment);
    sensor.report.addVector(judgement.expected, texts.expectedName, texts.expectedComment);
    sensor.report.addAttributed("threshold", texts.thresholdComment, fixedText(judgement.highest));
    judgement.unit = texts.unit.value_or(sensor.samplingUnit);
    return judgeReported(std::move(judgement), texts.quantity, texts.measuredName);
}

bool SensorTest::judgeReported(Judgement judgement, const std::string& quantity,
                               const std::string& parameter, const VerdictTexts& verdict) {
    const bool ok = judgement.passed;
    judgement.sensor = sensor.getDisplayName();
    judgement.check = name;
    judgement.stage = stage;
    judgement.quantity = quantity;
    judgement.parameter = parameter;
    sensor.report.addComment(ok ? verdict.passed : verdict.failed);
    sensor.run().judged(std::move(judgement));
    allPassed = allPassed && ok;
    return ok;
}

bool SensorTest::finish() {
    if (!allPassed) {
        sensor.run().addFailure(
            wrongAxis ? FailureKind::CheckAxisMapping : FailureKind::CheckCalibration,
            sensor.getDisplayName());
    }
    return allPassed;
}

}  // namespace tavocal
