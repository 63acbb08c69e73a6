#include "sensors/inertial/InertialTests.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "base/Text.h"
#include "numerics/TextForms.h"
#include "numerics/Vector.h"
#include "platform/Console.h"
#include "sensors/inertial/AxisMapping.h"
#include "sensors/inertial/InertialSensor.h"
#include "sensors/inertial/StageStatistics.h"
#include "sensors/model/Assertions.h"
#include "sensors/model/RunContext.h"
#include "sensors/model/SensorTest.h"
#include "vocabulary/SensorTypes.h"
#include "vocabulary/TestingConfig.h"

namespace tavocal {

namespace {

constexpr TestTexts kMean = {"mean",
                             std::nullopt,
                             "Average",
                             "The measured averages",
                             "ExpectedAverage",
                             "The averages that are expected at a perfectly calibrated system"};
constexpr TestTexts kNoise = {"noise",
                              std::nullopt,
                              "StandardDeviation",
                              "The measured noise",
                              "ExpectedDeviation",
                              "noise that is expected at a perfectly calibrated system"};
constexpr TestTexts kFaceUpNoise = {
    "noise",          std::nullopt, "StandardDeviation",
    "measured noise", "Expected",   "noise expected at a perfectly calibrated system"};

constexpr const char* kSpikes = "spikes";

// One stage of TestAverage, with the limits that apply to it.
struct StageTest {
    InertialSensor& sensor;
    SensorTest& test;
    int stage;
    double averageLimit;
    double noiseLimit;
    double spikeLimit;

    std::string stem() const {
        return "motionless " + sensor.getDisplayName() + " step " + std::to_string(stage);
    }

    Vector mean() const { return row(sensor.stageMeans, stage); }

    // A gyroscope at rest reads nothing.
    Vector expected() const {
        return sensor.name == kGyroscopeName ? Vector(3) : sensor.expectedRow(stage);
    }

    void testMean() const {
        const Judgement judgement =
            assertVector(mean(), expected(), stem() + " Mean value test", "", averageLimit);
        if (!test.judge(judgement, kMean) && readsWrongAxis()) {
            test.suspectWrongAxis();
        }
    }

    // The right size along a wrong axis.
    bool readsWrongAxis() const {
        return sensor.name != kGyroscopeName && pointsAlongWrongAxis(mean(), expected());
    }

    void testNoise() const {
        test.judge(assertVector(row(sensor.stageStds, stage), Vector(3), stem() + " Std value test",
                                "", noiseLimit),
                   kNoise);
    }

    void testSpikes() const {
        const int allowed = testingConfig().max_spikes_allowed;
        const int count = sensor.countSpikes(stage, spikeLimit);
        const Judgement judgement = assertSpikes(count, allowed, stem());
        SensorReport& report = sensor.report;
        report.addAttributed(kSpikes, "The measured spikes number", std::to_string(count));
        report.addAttributed("threshold", "", fixedText(spikeLimit));
        report.addAttributed("allowed:", "", std::to_string(allowed));
        test.judgeReported(judgement, kSpikes, kSpikes);
    }
};

// ---- Face up ----

// The limit holds for each element by itself, and every element counts.
Judgement judgeElements(const Vector& measured, const Vector& expected, double limit) {
    Judgement judgement = acceptedUpTo({}, largestMagnitude(measured - expected), limit);
    judgement.measured = measured;
    judgement.expected = expected;
    const Vector difference = measured - expected;
    judgement.passed = std::all_of(difference.begin(), difference.end(),
                                   [limit](double d) { return std::abs(d) <= limit; });
    return judgement;
}

void testFaceUpNoise(InertialSensor& sensor, SensorTest& test, const Vector& deviation) {
    static constexpr const char* kAxes[] = {"X", "Y", "Z"};
    const Judgement judgement = judgeElements(deviation, Vector(3), sensor.noiseLimit);
    if (!judgement.passed) {
        const auto* const bad = std::find_if(deviation.begin(), deviation.end(), [&](double axis) {
            return !(axis <= judgement.highest);
        });
        platform::Console::instance().write(
            "[Failure] Noise on " + sensor.name + " sensor exceeded the threshold on axis:" +
            kAxes[bad - deviation.begin()] + "\nNoise: " + fixedText(*bad) +
            " , maximum allowed is " + fixedText(judgement.highest) + "\n");
    }
    test.judge(judgement, kFaceUpNoise);
}

void testFaceUpSpikes(InertialSensor& sensor, SensorTest& test, const Vector& mean) {
    const int allowed = testingConfig().max_spikes_allowed;
    const auto count = std::count_if(
        sensor.bufferedData.begin(), sensor.bufferedData.end(), [&](const Sample& sample) {
            return largestMagnitude(mean - sample.values) > sensor.spikeLimit;
        });
    const Judgement judgement = acceptedUpTo({}, static_cast<double>(count), allowed);
    if (!judgement.passed) {
        platform::Console::instance().write("[Failure] Spikes number detected on " + sensor.name +
                                            " is above allowed threshold of " +
                                            std::to_string(allowed) + "\n");
    }
    test.judgeReported(judgement, kSpikes, "spikes test",
                       {"spikes test: PASSED", "spikes test: FAILED"});
}

void testFaceUpAverage(InertialSensor& sensor, SensorTest& test, const Vector& mean) {
    const Judgement judgement = judgeElements(mean, sensor.expectedFaceUp, sensor.averageLimit);
    if (!judgement.passed) {
        platform::Console::instance().write(
            "[Failure] Average value error in " + sensor.name + " above allowed threshold " +
            fixedText(judgement.highest) + "\nResults:  " + alignedRow(judgement.measured) +
            "Expected: " + alignedRow(judgement.expected));
    }
    test.judge(judgement, kMean);
}

}  // namespace

bool TestAverage(InertialSensor& sensor, double averageLimit, double noiseLimit,
                 double spikeLimit) {
    SensorTest test(sensor, "Performing_TestAverage");
    const int stageCount = sensor.run().stageCount();
    for (int i = 0; i < stageCount; ++i) {
        test.beginStep("step", i);
        const bool handHeld = i != 0 && i != stageCount - 1;
        const double f = handHeld ? testingConfig().hand_held_motionless_factor : 1.0;
        const StageTest stage{sensor, test, i, averageLimit * f, noiseLimit * f, spikeLimit * f};
        stage.testMean();
        stage.testNoise();
        stage.testSpikes();
    }
    return test.finish();
}

bool faceUpTest(InertialSensor& sensor) {
    SensorTest test(sensor, "FaceUpTest", false);
    const FaceUpStatistics statistics = faceUpStatistics(sensor);
    testFaceUpNoise(sensor, test, statistics.deviation);
    testFaceUpSpikes(sensor, test, statistics.mean);
    testFaceUpAverage(sensor, test, statistics.mean);
    return test.finish();
}

}  // namespace tavocal
