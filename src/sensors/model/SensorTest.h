#pragma once

#include <optional>
#include <string>

#include "vocabulary/Judgement.h"

namespace tavocal {

class Sensor;

// How a measured vector, what it is held against and the threshold between them stand in the
// report. Without a unit it is the sensor's own.
struct TestTexts {
    const char* quantity;
    std::optional<Unit> unit;
    const char* measuredName;
    const char* measuredComment;
    const char* expectedName;
    const char* expectedComment;
    const char* thresholdComment = "";
};

// The comment behind a judgement in the report.
struct VerdictTexts {
    const char* passed;
    const char* failed;
};
constexpr VerdictTexts kVerdict = {": PASSED", " FAILED"};

// One test of a sensor's readings at work. Each judgement goes into the report, with the numbers
// behind it and the verdict as a comment, and to the run's list. Main thread, after sampling.
class SensorTest {
  public:
    // What is reported goes into a subtree `testName` as long as this object lives, or, without
    // `inSubtree`, beside what the sensor has reported. `judged`, which needs a run, and `testName`
    // must outlive this object.
    SensorTest(Sensor& judged, const char* testName, bool inSubtree = true);
    SensorTest(const SensorTest&) = delete;
    SensorTest& operator=(const SensorTest&) = delete;
    ~SensorTest();

    // What follows belongs to this stage or motion, which the report announces as `title` and its
    // number.
    void beginStep(const std::string& title, int number);

    // Takes a judgement of a measured vector. The result is whether it passed.
    bool judge(Judgement judgement, const TestTexts& texts);
    // Takes a judgement whose numbers are reported already, under the name `parameter`.
    bool judgeReported(Judgement judgement, const std::string& quantity,
                       const std::string& parameter, const VerdictTexts& verdict = kVerdict);

    // A failure looks like the right size along a wrong axis.
    void suspectWrongAxis() { wrongAxis = true; }

    bool passed() const { return allPassed; }
    // Tells the operator's summary of a failed test. The result is whether it passed.
    bool finish();

  private:
    Sensor& sensor;
    const char* const name;
    const bool hasSubtree;
    int stage = Judgement::kWholeRun;
    bool allPassed = true;
    bool wrongAxis = false;
};

}  // namespace tavocal
