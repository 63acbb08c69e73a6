#include "sensors/inertial/InertialTests.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "base/Text.h"
#include "numerics/TextForms.h"
#include "numerics/Vector.h"
#include "platform/Console.h"
#include "sensors/inertial/Assertions.h"
#include "sensors/inertial/AxisMapping.h"
#include "sensors/inertial/InertialSensor.h"
#include "sensors/inertial/StageStatistics.h"
#include "sensors/model/RunContext.h"
#include "vocabulary/SensorTypes.h"
#include "vocabulary/TestingConfig.h"

namespace tavocal {

namespace {

void addVerdict(SensorReport& report, bool passed) {
    report.addComment(passed ? ": PASSED" : " FAILED");
}

void addThreshold(SensorReport& report, double threshold) {
    report.addAttributed("threshold", "", fixedText(threshold));
}

// One stage of TestAverage, with the limits that apply to it.
struct StageTest {
    InertialSensor& sensor;
    int stage;
    std::string stem;
    double averageLimit;
    double noiseLimit;
    double spikeLimit;

    Vector mean() const { return row(sensor.stageMeans, stage); }

    // A gyroscope at rest reads nothing.
    Vector expected() const {
        return sensor.name == kGyroscopeName ? Vector(3) : sensor.expectedRow(stage);
    }

    bool testMean() const {
        const bool passed =
            assertVector(mean(), expected(), stem + " Mean value test", "", averageLimit);
        sensor.report.addVector(mean(), "Average", "The measured averages");
        sensor.report.addVector(expected(), "ExpectedAverage",
                                "The averages that are expected at a perfectly calibrated system");
        addThreshold(sensor.report, averageLimit);
        addVerdict(sensor.report, passed);
        return passed;
    }

    // The right size along a wrong axis.
    bool readsWrongAxis() const {
        return sensor.name != kGyroscopeName && pointsAlongWrongAxis(mean(), expected());
    }

    bool testNoise() const {
        const Vector deviation = row(sensor.stageStds, stage);
        const bool passed =
            assertVector(deviation, Vector(3), stem + " Std value test", "", noiseLimit);
        sensor.report.addVector(deviation, "StandardDeviation", "The measured noise");
        sensor.report.addVector(Vector(3), "ExpectedDeviation",
                                "noise that is expected at a perfectly calibrated system");
        addThreshold(sensor.report, noiseLimit);
        addVerdict(sensor.report, passed);
        return passed;
    }

    bool testSpikes() const {
        const int allowed = testingConfig().max_spikes_allowed;
        const int count = sensor.countSpikes(stage, spikeLimit);
        const bool passed = assertSpikes(count, allowed, stem);
        sensor.report.addAttributed("spikes", "The measured spikes number", std::to_string(count));
        addThreshold(sensor.report, spikeLimit);
        sensor.report.addAttributed("allowed:", "", std::to_string(allowed));
        addVerdict(sensor.report, passed);
        return passed;
    }
};

// ---- Face up ----

bool testFaceUpNoise(InertialSensor& sensor, const Vector& deviation) {
    static constexpr const char* kAxes[] = {"X", "Y", "Z"};
    const auto* const bad =
        std::find_if(deviation.begin(), deviation.end(),
                     [&sensor](double axis) { return !(axis <= sensor.noiseLimit); });
    const bool passed = bad == deviation.end();
    if (!passed) {
        platform::Console::instance().write(
            "[Failure] Noise on " + sensor.name + " sensor exceeded the threshold on axis:" +
            kAxes[bad - deviation.begin()] + "\nNoise: " + fixedText(*bad) +
            " , maximum allowed is " + fixedText(sensor.noiseLimit) + "\n");
    }
    sensor.report.addVector(deviation, "StandardDeviation", "measured noise");
    sensor.report.addVector(Vector(3), "Expected",
                            "noise expected at a perfectly calibrated system");
    addThreshold(sensor.report, sensor.noiseLimit);
    addVerdict(sensor.report, passed);
    return passed;
}

bool testFaceUpSpikes(InertialSensor& sensor, const Vector& mean) {
    const int allowed = testingConfig().max_spikes_allowed;
    const auto count = std::count_if(
        sensor.bufferedData.begin(), sensor.bufferedData.end(), [&](const Sample& sample) {
            return largestMagnitude(mean - sample.values) > sensor.spikeLimit;
        });
    const bool passed = count <= allowed;
    if (!passed) {
        platform::Console::instance().write("[Failure] Spikes number detected on " + sensor.name +
                                            " is above allowed threshold of " +
                                            std::to_string(allowed) + "\n");
    }
    sensor.report.addComment(std::string("spikes test: ") + (passed ? "PASSED" : "FAILED"));
    return passed;
}

bool testFaceUpAverage(InertialSensor& sensor, const Vector& mean) {
    const Vector difference = mean - sensor.expectedFaceUp;
    const bool passed = std::all_of(difference.begin(), difference.end(), [&sensor](double d) {
        return std::abs(d) <= sensor.averageLimit;
    });
    if (!passed) {
        platform::Console::instance().write(
            "[Failure] Average value error in " + sensor.name + " above allowed threshold " +
            fixedText(sensor.averageLimit) + "\nResults:  " + alignedRow(mean) +
            "Expected: " + alignedRow(sensor.expectedFaceUp));
    }
    sensor.report.addVector(mean, "Average", "The measured averages");
    sensor.report.addVector(sensor.expectedFaceUp, "ExpectedAverage",
                            "The averages that are expected at a perfectly calibrated system");
    addThreshold(sensor.report, sensor.averageLimit);
    addVerdict(sensor.report, passed);
    return passed;
}

}  // namespace

bool TestAverage(InertialSensor& sensor, double averageLimit, double noiseLimit,
                 double spikeLimit) {
    bool pass = true;
    bool suspect = false;
    const int stageCount = sensor.run().stageCount();
    sensor.report.beginSubtree("Performing_TestAverage");
    for (int i = 0; i < stageCount; ++i) {
        sensor.report.addComment("step " + std::to_string(i));
        const bool handHeld = i != 0 && i != stageCount - 1;
        const double f = handHeld ? testingConfig().hand_held_motionless_factor : 1.0;
        const StageTest test{sensor,
                             i,
                             "motionless " + sensor.getDisplayName() + " step " + std::to_string(i),
                             averageLimit * f,
                             noiseLimit * f,
                             spikeLimit * f};
        const bool meanPassed = test.testMean();
        suspect = suspect || (!meanPassed && test.readsWrongAxis());
        const bool noisePassed = test.testNoise();
        const bool spikesPassed = test.testSpikes();
        pass = pass && meanPassed && noisePassed && spikesPassed;
    }
    sensor.report.endSubtree();
    if (suspect) {
        sensor.run().addFailure(1, sensor.getDisplayName());
    } else if (!pass) {
        sensor.run().addFailure(0, sensor.getDisplayName());
    }
    return pass;
}

bool faceUpTest(InertialSensor& sensor) {
    const FaceUpStatistics statistics = faceUpStatistics(sensor);
    const bool noisePassed = testFaceUpNoise(sensor, statistics.deviation);
    const bool spikesPassed = testFaceUpSpikes(sensor, statistics.mean);
    const bool averagePassed = testFaceUpAverage(sensor, statistics.mean);
    const bool pass = noisePassed && spikesPassed && averagePassed;
    if (!pass) {
        sensor.run().addFailure(0, sensor.getDisplayName());
    }
    return pass;
}

}  // namespace tavocal
