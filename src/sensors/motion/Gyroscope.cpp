#include "sensors/motion/Gyroscope.h"

#include <algorithm>
#include <optional>
#include <string>

#include "base/Failures.h"
#include "base/Text.h"
#include "numerics/MatrixInverse.h"
#include "numerics/Rotations.h"
#include "sensors/inertial/AxisMapping.h"
#include "sensors/inertial/FaceUpCalibration.h"
#include "sensors/model/Assertions.h"
#include "sensors/model/RunContext.h"
#include "sensors/model/SampleWindows.h"
#include "sensors/model/SensorTest.h"
#include "sensors/model/StageSegments.h"
#include "sensors/motion/ExpectedTurns.h"
#include "vocabulary/SensorTypes.h"
#include "vocabulary/TestingConfig.h"

namespace tavocal {

namespace {

constexpr int kTurns = 3;
constexpr double kSecondsPerMs = 0.001;
constexpr double kMsPerSecond = 1000.0;

constexpr TestTexts kMotion = {"rotation", Unit::degree,
                               "Angles",   "measured rotation in degrees",
                               "Expected", "expected rotation at a perfectly calibrated system"};

}  // namespace

Gyroscope::Gyroscope(const LUID& identity) : InertialSensor(identity) {
    name = kGyroscopeName;
    samplingUnit = Unit::degPerSec;
    firmwareUnit = Unit::degPerSec5;
    rawDivisor = 100000;
    canCalibrate = true;
    stillStageCount = kTurns;
    stillness.stillFloor = 0.1;
    stillness.stillStdLimit = 5.0;
    stillness.stillRangeLimit = 15.0;
    rotationThreshold = 200.0;
    if (isDynamic()) {
        formatId = 2;
        minCalibrationSize = 71;
        maxCalibrationSize = 71;
    }
}

void Gyroscope::setThresholds() {
    const bool full = run().flowType() == FlowType::Full;
    limits.scaleLimit = full ? 0.3 : 0.5;
    limits.rotationLimit = full ? 5.0 : 0.3;
    limits.expectedErrorLimit = full ? 10.0 : 40.0;
    limits.offsetLimit = full ? 30.0 : 50.0;
    limits.normStdLimit = 100.0;
    limits.whiteNoiseLimit = 15.0;
    limits.normTolerance = 20.0;
    defaultNoise = 0.1;
    faceUpStdLimit = 5.0;
    faceUpOffsetLimit = 50.0;
}

void Gyroscope::buildExpectedValues() {
    const FlowType flow = run().flowType();
    if (std::optional<ExpectedTurns> expected = expectedTurns(*this, flow)) {
        nominalAngle = expected->nominalAngle;
        expectedValues = expected->turns;
    }
    // Quarter turns by hand are too rough to tell how the sensor's axes are turned.
    if (flow == FlowType::FourSteps) {
        noGyroRotation = true;
    }
    limits.expectedNorm = nominalAngle;
}

// ---- Detection of turns ----

void Gyroscope::captureRotationBias() {
    if (!bufferedData.empty()) {
        rotationBias = lastWindowMedian();
    }
}

bool Gyroscope::rotationDetected(double /*since*/) {
    if (bufferedData.empty()) {
        return false;
    }
    const int newest = static_cast<int>(bufferedData.size()) - 1;
    const Vector rate = bufferedData.back().values - rotationBias;
    referenceVector += rate * (intervalBefore(bufferedData, newest) * kSecondsPerMs);
    if (!(norm(referenceVector) >= rotationThreshold)) {
        return false;
    }
    referenceVector = Vector(3);
    return true;
}

// ---- Calibration ----

void Gyroscope::calibrate() {
    setThresholds();
    setStageRows();
    buildExpectedValues();
    switch (run().flowType()) {
        case FlowType::Full:
        case FlowType::FourSteps:
            calibrateTurns();
            break;
        case FlowType::Minimal:
            faceUpCalibrate(*this);
            break;
        case FlowType::MagAccuracyTest:
        case FlowType::AccelerometerOnly:
            break;
    }
}

void Gyroscope::calibrateTurns() {
    computeStageStatistics();
    calcScaleMatrix(nominalAngle);
    splitAxisMapping(noGyroRotation);
    checkSuccessGate();
    convertToFWForamt();
}

bool Gyroscope::computeStageStatistics() {
    const std::vector<double> times = run().segmentTimes();
    const std::size_t stride = positionStride(times.size());
    const std::vector<int> ind = findIndex();
    const int turns = integrateTurns(ind, stride);
    const std::vector<Sample> still = stillSamples(ind);
    if (still.empty()) {
        throw noSamplesBefore(*this, 1);
    }
    offsetVector = medianAndNoise(still);
    const bool noiseMeasured = replaceLostNoise();
    for (int k = 0; k < turns; ++k) {
        const std::size_t begin = 1 + static_cast<std::size_t>(k) * stride;
        const double length = times[begin + 1] - times[begin];
        stageMeans.setRow(k, row(stageMeans, k) - offsetVector * length * kSecondsPerMs);
    }
    return noiseMeasured;
}

// The integrals of the measured turns into the rows of stageMeans; the result is their number. In
// the Full flow every other motion is a tilt to the next position, which is no measured turn.
int Gyroscope::integrateTurns(const std::vector<int>& ind, std::size_t stride) {
    int k = 0;
    for (std::size_t i = 1; i + 1 < ind.size() && k < stageMeans.rows(); i += stride) {
        Vector turn(3);
        for (int j = ind[i]; j < ind[i + 1]; ++j) {
            turn += bufferedData[static_cast<std::size_t>(j)].values *
                    intervalBefore(bufferedData, j) * kSecondsPerMs;
        }
        stageMeans.setRow(k, turn);
        ++k;
    }
    return k;
}

// All stages, each without its last sample, which belongs to the motion that ended it.
std::vector<Sample> Gyroscope::stillSamples(const std::vector<int>& ind) const {
    std::vector<Sample> still;
    for (std::size_t i = 0; i + 1 < ind.size(); i += 2) {
        appendSamples(still, bufferedData, {ind[i], ind[i + 1] - 1});
    }
    return still;
}

void Gyroscope::calcScaleMatrix(double angle) {
    for (int i = 0; i < kTurns; ++i) {
        const Vector expected = expectedRow(i);
        const int j = indexOfLargestSquare(expected);
        scaleMatrix.setColumn(j, (row(stageMeans, i) * signOf(expected[j])) / angle);
    }
    try {
        scaleMatrix = inverse3(scaleMatrix);
    } catch (const MathException&) {
        throw CalibrationException("Failed to calculate scale matrix");
    }
}

Vector Gyroscope::calibratedStageMean(int i) const {
    return (scaleMatrix * axisMapping) * row(stageMeans, i);
}

// ---- Test ----

bool Gyroscope::testCalibration() {
    setStageRows();
    buildExpectedValues();
    noiseLimit = testingConfig().gyr_MaxNoise_DPS;
    spikeLimit = testingConfig().gyr_MaxSpike_DPS;
    averageLimit = testingConfig().gyr_threshold_motionless_DPS;
    const FlowType flow = run().flowType();
    if (flow == FlowType::Minimal) {
        return InertialSensor::testCalibration();
    }
    computeTestRotations();
    ComputeStaticSegmentsStds();
    // Here the gyroscope only serves the comparison with the other sensors.
    if (flow == FlowType::MagAccuracyTest) {
        return true;
    }
    const bool restPassed = InertialSensor::testCalibration();
    const bool turnsPassed = TestIntegration();
    return restPassed && turnsPassed;
}

void Gyroscope::computeTestRotations() {
    const int stageCount = run().stageCount();
    motionRotations = Matrix(std::max(stageCount - 1, 0), 3);
    if (run().segmentTimes().empty()) {
        throw CalibrationException(getDisplayName() +
                                   " Calibration Error: Failed splitting data to segments");
    }
    ComputeStaticSegmentsMeans();
    for (int i = 0; i < std::min(stageCount, stageMeans.rows()); ++i) {
        offsetVector += row(stageMeans, i);
    }
    offsetVector = offsetVector / stageCount;
    const std::vector<int> ind = findIndex();
    for (int i = 0; i < motionRotations.rows(); ++i) {
        followMotion(i, ind);
    }
    findStillNoise(ind);
}

void Gyroscope::followMotion(int motion, const std::vector<int>& ind) {
    const bool followAttitude = run().runType() == RunCommand::TestCalibration;
    const Vector bias = row(stageMeans, 0);
    const StageRange range = motionRange(ind, motion);
    Vector angles(3);
    Matrix attitude = identity(3);
    for (int j = range.first; j < range.end; ++j) {
        const Vector rate = bufferedData[static_cast<std::size_t>(j)].values - bias;
        const Vector turn = rate * (intervalBefore(bufferedData, j) / kMsPerSecond);
        angles += turn;
        if (followAttitude) {
            attitude = rotateFirstOrder(attitude, turn * kRadiansPerDegree);
        }
    }
    motionRotations.setRow(motion, angles);
    if (followAttitude) {
        testRotations.push_back(attitude);
    }
}

void Gyroscope::findStillNoise(const std::vector<int>& ind) {
    noiseVector = Vector(3);
    int count = 0;
    for (int i = 0; i < run().stageCount(); ++i) {
        const StageRange stage = stageRange(ind, i);
        for (int j = stage.first; j < stage.end; ++j) {
            const Vector d = offsetVector - bufferedData[static_cast<std::size_t>(j)].values;
            noiseVector += elementProduct(d, d);
            ++count;
        }
    }
    if (count == 0) {
        throw CalibrationException("Error. Divider is zero");
    }
    noiseVector = sqrtValues(noiseVector / count);
}

bool Gyroscope::TestIntegration() {
    SensorTest test(*this, "Performing_TestIntegration");
    for (int i = 0; i < std::min(motionRotations.rows(), expectedValues.rows()); ++i) {
        test.beginStep("dynamic step", i);
        const Judgement judgement = assertVector(
            row(motionRotations, i), expectedRow(i),
            "motion " + getDisplayName() + " step " + std::to_string(i) + " gyro rotation test", "",
            testingConfig().gyr_threshold_motion_DPS);
        if (!test.judge(judgement, kMotion) &&
            pointsAlongWrongAxis(row(motionRotations, i), expectedRow(i))) {
            test.suspectWrongAxis();
        }
    }
    return test.finish();
}

}  // namespace tavocal
