#include "sensors/motion/Accelerometer.h"

#include <array>
#include <cmath>

#include "base/Failures.h"
#include "calibration/InertialBlock.h"
#include "log/Logger.h"
#include "numerics/MatrixInverse.h"
#include "sensors/inertial/FaceUpCalibration.h"
#include "sensors/model/RunContext.h"
#include "sensors/model/Verdict.h"
#include "sensors/motion/ExpectedGravity.h"
#include "vocabulary/SensorTypes.h"
#include "vocabulary/TestingConfig.h"

namespace tavocal {

namespace {

// The offset column of the affine system. It weighs the offset against the scale in the rounding
// of the inverse, and nothing else: four positions determine the system exactly.
constexpr double kOffsetColumn = 0.001;
constexpr int kPositions = 4;

}  // namespace

Accelerometer::Accelerometer(const LUID& identity) : InertialSensor(identity) {
    name = kAccelerometerName;
    samplingUnit = Unit::g0;
    firmwareUnit = Unit::microg0;
    rawDivisor = 1000000;
    canCalibrate = true;
    stillStageCount = kPositions;
    stillness.stillFloor = 0.0005;
    stillness.stillStdLimit = 0.015;
    stillness.stillRangeLimit = 0.08;
    moveThreshold = 1.0;
}

void Accelerometer::setCheckVsOriginalAxis(bool check) {
    checkVsOriginalAxis = check;
}

bool Accelerometer::movedFromReference() {
    return newestMovedFromReference();
}

void Accelerometer::setThresholds() {
    const FlowType flow = run().flowType();
    const bool affine = flow == FlowType::Full || flow == FlowType::AccelerometerOnly;
    limits.whiteNoiseLimit = affine ? 0.015 : 0.06;
    limits.normStdLimit = affine ? 0.001 : 0.04;
    limits.expectedErrorLimit = affine ? 0.001 : 0.2;
    limits.scaleLimit = affine ? 0.3 : 0.5;
    limits.rotationLimit = affine ? 5.0 : 0.3;
    limits.offsetLimit = 0.3;
    limits.expectedNorm = 1.0;
    limits.normTolerance = 0.02;
    if (affine) {
        defaultNoise = 0.001;
    }
    faceUpStdLimit = 0.05;
    faceUpOffsetLimit = 0.3;
    gravityReference = 1.0;
}

void Accelerometer::buildExpectedValues() {
    const FlowType flow = run().flowType();
    if (flow == FlowType::Minimal) {
        expectedFaceUp[2] = isPrimary() ? gravity : -gravity;
    } else {
        expectedValues = expectedGravity(*this, flow, gravity);
    }
}

// ---- Calibration ----

void Accelerometer::calibrate() {
    setThresholds();
    setStageRows();
    buildExpectedValues();
    try {
        calibrateByFlow();
    } catch (const MathException& exception) {
        TAVOCAL_LOG(Debug, "Accelerometer::calibrate",
                    std::string("Caught math exception: ") + exception.what());
        throw CalibrationException("Math Exception in Accelerometer");
    }
}

void Accelerometer::calibrateByFlow() {
    switch (run().flowType()) {
        case FlowType::Full:
        case FlowType::AccelerometerOnly:
            calibrateFull();
            break;
        case FlowType::FourSteps:
            calibrateFourSteps();
            break;
        case FlowType::Minimal:
            faceUpCalibrate(*this);
            break;
        case FlowType::MagAccuracyTest:
            break;
    }
}

void Accelerometer::calibrateFull() {
    computeStageStatistics();
    noiseVector = calcWhiteNoise();
    solveAffineMap();
    splitAxisMapping(false);
    checkSuccessGate();
    convertToFWForamt();
}

// Solves scaleMatrix * m[p] + kOffsetColumn * c = e[p] for the four positions p, axis by axis: 12
// equations with 12 unknowns. Positions that are alike give non-finite numbers, which the gate
// refuses.
void Accelerometer::solveAffineMap() {
    Matrix system(3 * kPositions, 3 * kPositions);
    Vector b(3 * kPositions);
    for (int k = 0; k < 3; ++k) {
        for (int p = 0; p < kPositions; ++p) {
            const int r = kPositions * k + p;
            for (int i = 0; i < 3; ++i) {
                system[r][kPositions * k + i] = stageMeans[p][i];
            }
            system[r][kPositions * k + 3] = kOffsetColumn;
            b[r] = expectedValues[p][k];
        }
    }
    const Vector x = inverse(system) * b;
    scaleMatrix =
        Matrix(std::vector<Vector>{{x[0], x[1], x[2]}, {x[4], x[5], x[6]}, {x[8], x[9], x[10]}});
    const Vector c{x[3], x[7], x[11]};
    offsetVector = (inverse3(scaleMatrix) * -kOffsetColumn) * c;
}

void Accelerometer::calibrateFourSteps() {
    computeStageStatistics();
    noiseVector = calcWhiteNoise();
    mapFourStepAxes();
    findFourStepOffset();
    findFourStepScale();
    if (checkVsOriginalAxis) {
        CheckAxisMappingVsOrig();
    }
    checkSuccess(stageMeans);
    convertToFWForamt();
}

// Each of the first three positions shows which axis of the sensor carries gravity, and which axis
// of the device should.
void Accelerometer::mapFourStepAxes() {
    Matrix measured(3, 3);
    Matrix expected(3, 3);
    for (int i = 0; i < 3; ++i) {
        const Vector mean = row(stageMeans, i);
        const int j = indexOfLargestSquare(mean);
        measured[j][i] = signOf(mean[j]);
        expected.setColumn(i, normalized(expectedRow(i)));
    }
    axisMapping = expected * inverse3(measured);
}

// The mean of each axis over the positions in which it doesn't carry gravity.
void Accelerometer::findFourStepOffset() {
    Vector sums(3);
    std::array<int, 3> counts{};
    for (int i = 0; i < run().stageCount(); ++i) {
        const Vector t = axisMapping * row(stageMeans, i);
        sums = sums + t;
        const int j = indexOfLargestSquare(t);
        for (int axis = 0; axis < 3; ++axis) {
            counts[static_cast<std::size_t>(axis)] += axis == j ? 0 : 1;
        }
        sums[j] -= t[j];
    }
    for (int axis = 0; axis < 3; ++axis) {
        sums[axis] = sums[axis] / counts[static_cast<std::size_t>(axis)];
    }
    offsetVector = transpose(axisMapping) * sums;
}

void Accelerometer::findFourStepScale() {
    scaleMatrix = Matrix(3, 3);
    for (int i = 0; i < 3; ++i) {
        const Vector t = axisMapping * (row(stageMeans, i) - offsetVector);
        const int j = indexOfLargestSquare(t);
        scaleMatrix[j][j] = gravityReference / std::abs(t[j]);
    }
}

void Accelerometer::CheckAxisMappingVsOrig() {
    if (!isPrimary()) {
        return;
    }
    if (originalCalibration.size() < kStaticBlockSize) {
        judgeAxisMapping(false, "No original axis mapping to compare with.\n");
        return;
    }
    const std::uint32_t now = compressAxisMapping(axisMapping);
    const std::uint32_t original =
        compressAxisMapping(decodeStaticBlock(originalCalibration).axisMapping);
    if (now != original) {
        TAVOCAL_LOG(Error, "Accelerometer::CheckAxisMappingVsOrig",
                    "the original axis mapping was " + std::to_string(original) + " new one is " +
                        std::to_string(now));
    }
    judgeAxisMapping(now == original, "wrong movement detected");
}

void Accelerometer::judgeAxisMapping(bool isOriginal, const char* reason) {
    Verdict verdict(*this, "Calibration");
    verdict.judge(
        refusedAbove("axis mappings that are not the original", isOriginal ? 0.0 : 1.0, 0.0),
        "AxisMapping", std::string("Calibration failed for all sensors. Reason: ") + reason);
    if (verdict.failed()) {
        throw CalibrationException(verdict.reasons());
    }
}

// ---- Test ----

bool Accelerometer::testCalibration() {
    setStageRows();
    buildExpectedValues();
    noiseLimit = testingConfig().acc_MaxNoise_G0;
    spikeLimit = testingConfig().acc_MaxSpike_G0;
    averageLimit = testingConfig().acc_Threshold_G0;
    if (run().flowType() != FlowType::Minimal) {
        ComputeStaticSegmentsMeans();
        ComputeStaticSegmentsStds();
    }
    return InertialSensor::testCalibration();
}

}  // namespace tavocal
