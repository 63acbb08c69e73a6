#include "sensors/magnetic/Magnetometer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <span>
#include <utility>

#include "base/Failures.h"
#include "log/Logger.h"
#include "numerics/MatrixInverse.h"
#include "numerics/Rotations.h"
#include "numerics/Statistics.h"
#include "numerics/TextForms.h"
#include "sensors/inertial/FaceUpCalibration.h"
#include "sensors/magnetic/Ellipsoid.h"
#include "sensors/magnetic/ExpectedField.h"
#include "sensors/magnetic/MagnetometerTests.h"
#include "sensors/magnetic/SampleCloud.h"
#include "sensors/model/RunContext.h"
#include "vocabulary/SensorTypes.h"

namespace tavocal {

namespace {

constexpr int kPositions = 4;
constexpr int kCoarseSteps = 50;
constexpr int kFineSteps = 100;
constexpr double kCoarseStep = 0.06283185307179587;  // pi / 50

// Where the turn about one axis of the device lies among the stage boundaries of the Full flow. Its
// last samples belong to the position that it ends in.
struct TurnWindow {
    std::size_t begin;
    std::size_t end;
    int cut;
};

// About X, Y and Z.
constexpr std::array<TurnWindow, 3> kTurnWindows = {{{9, 10, 9}, {5, 6, 5}, {1, 2, 1}}};

double stepOf(double low, double high, int i, int steps) {
    return low + (high - low) * i / steps;
}

}  // namespace

Magnetometer::Magnetometer(const LUID& identity) : InertialSensor(identity) {
    name = kMagnetometerName;
    samplingUnit = Unit::milliGauss;
    firmwareUnit = Unit::microGauss;
    rawDivisor = 1000;
    canCalibrate = true;
    stillStageCount = kPositions;
    expectedFaceUp = {0.0, 360.0, 270.0};
    stillness.stillFloor = 1.0;
    stillness.stillStdLimit = 30.0;
    stillness.stillRangeLimit = 100.0;
    moveThreshold = 300.0;
    rotationThreshold = 200.0;
}

Magnetometer::~Magnetometer() = default;

bool Magnetometer::dataRecieved(const Sample& sample) {
    if (run().runType() != RunCommand::MagEnvironmentTest) {
        return InertialSensor::dataRecieved(sample);
    }
    if (sample.values.size() != valuesPerSample) {
        return false;
    }
    environment.add(sample);
    return true;
}

std::string Magnetometer::toDisplayText() const {
    if (run().runType() == RunCommand::MagEnvironmentTest) {
        return "Test passed. You are good to go!\n";
    }
    return InertialSensor::toDisplayText();
}

bool Magnetometer::supportsRunType(RunCommand command) const {
    return command != RunCommand::CalibrateAls;
}

bool Magnetometer::rotationDetected(double since) {
    return turnDetector.range(bufferedData, since) > rotationThreshold;
}

bool Magnetometer::movedFromReference() {
    return newestMovedFromReference();
}

// ---- The magnetic environment test ----

void Magnetometer::userSignalledEnd() {
    environment.endRotations(minSampleSpacing);
}

bool Magnetometer::checkMagPreTest_singleRotation(int first, int last, int& axis) {
    return environment.singleRotation(first, last, axis);
}

bool Magnetometer::checkMagPreTest_threeRotations(std::vector<std::uint32_t> boundaries) {
    return environment.threeRotations(boundaries);
}

bool Magnetometer::checkMagPreTest_translation() {
    return environment.translation();
}

void Magnetometer::evaluateMagEnvironment() {
    environment.evaluate();
}

// ---- Calibration ----

void Magnetometer::setThresholds() {
    const bool full = run().flowType() == FlowType::Full;
    limits.offsetLimit = 10000.0;
    limits.normStdLimit = 30.0;
    limits.expectedErrorLimit = 150.0;
    limits.whiteNoiseLimit = full ? 15.0 : 50.0;
    limits.scaleLimit = 1.0;
    limits.rotationLimit = full ? 20.0 : 1.0;
    limits.expectedNorm = 450.0;
    limits.normTolerance = 200.0;
    defaultNoise = 1.0;
    faceUpOffsetLimit = 5000.0;
    faceUpStdLimit = 40.0;
    minSampleSpacing = 10.0;
    if (samplingUnit == Unit::milliGauss) {
        return;
    }
    for (double* limit : {&limits.offsetLimit, &limits.normStdLimit, &limits.expectedErrorLimit,
                          &limits.whiteNoiseLimit, &limits.scaleLimit, &limits.rotationLimit,
                          &limits.expectedNorm, &limits.normTolerance, &defaultNoise,
                          &faceUpOffsetLimit, &faceUpStdLimit, &minSampleSpacing}) {
        *limit = convertUnit(*limit, Unit::milliGauss, samplingUnit);
    }
}

void Magnetometer::calibrate() {
    setThresholds();
    setStageRows();
    try {
        calibrateByFlow();
    } catch (const MathException& exception) {
        TAVOCAL_LOG(
            Error, "Magnetometer::calibrate",
            std::string("Math exception was thrown when try to calc magnetometer values - ") +
                exception.what());
        throw CalibrationException(
            "Failed to calc magnetometer values, check your magnetic environment");
    }
}

void Magnetometer::calibrateByFlow() {
    switch (run().flowType()) {
        case FlowType::Full:
            calibrateFull();
            break;
        case FlowType::Minimal:
            faceUpCalibrate(*this);
            break;
        case FlowType::FourSteps:
        case FlowType::MagAccuracyTest:
        case FlowType::AccelerometerOnly:
            break;
    }
}

void Magnetometer::calibrateFull() {
    if (bufferedData.empty()) {
        throw MathException("The buffer is empty");
    }
    const bool noiseMeasured = computeStageStatistics();
    cloudSpacing = noiseMeasured ? 2.0 * norm(noiseVector) : defaultCloudSpacing;
    calcCorrection(Ellipsoid(spreadSamples(bufferedData, cloudSpacing)));
    splitAxisMapping(false);
    checkSuccessGate();
    convertToFWForamt();
}

void Magnetometer::calcCorrection(const Ellipsoid& fit) {
    Matrix correctedMeans(stageMeans.rows(), 3);
    std::vector<double> norms;
    for (int i = 0; i < stageMeans.rows(); ++i) {
        const Vector corrected = fit.apply(row(stageMeans, i));
        correctedMeans.setRow(i, corrected);
        norms.push_back(norm(corrected));
    }
    const double field = mean(norms);
    const double coarse = searchDip(kCoarseSteps, correctedMeans, field, -kHalfPi, kHalfPi);
    const double fine =
        searchDip(kFineSteps, correctedMeans, field, coarse - kCoarseStep, coarse + kCoarseStep);
    setExpectedField(fine, field);
    Matrix axes = measureAxes(fit);
    if (!isPrimary()) {
        axes = inverse(secondaryTurn(*this)) * axes;
    }
    scaleMatrix = axes * fit.correction;
    offsetVector = fit.center;
}

void Magnetometer::setExpectedField(double dip, double field) {
    sinDip = std::sin(dip);
    cosDip = std::cos(dip);
    expectedValues = expectedField(*this, sinDip, cosDip, field);
}

double Magnetometer::searchDip(int steps, const Matrix& correctedMeans, double field, double low,
                               double high) {
    int best = 0;
    double smallest = std::numeric_limits<double>::infinity();
    for (int i = 0; i < steps; ++i) {
        setExpectedField(stepOf(low, high, i, steps), field);
        const double error = meanAlignmentError(alignToExpected(correctedMeans), correctedMeans);
        if (error < smallest) {
            smallest = error;
            best = i;
        }
    }
    return stepOf(low, high, best, steps);
}

double Magnetometer::meanAlignmentError(const Matrix& rotation,
                                        const Matrix& correctedMeans) const {
    std::vector<double> angles;
    for (int i = 0; i < correctedMeans.rows(); ++i) {
        angles.push_back(clampedAngleBetween(expectedRow(i), rotation * row(correctedMeans, i)));
    }
    return mean(angles);
}

// The axes of the device, in the frame of the corrected samples, as rows.
Matrix Magnetometer::measureAxes(const Ellipsoid& fit) const {
    const std::vector<int> ind = findIndex();
    if (ind.size() <= kTurnWindows.front().end) {
        throw CalibrationException(name + " Calibration Error: Failed splitting data to segments");
    }
    Matrix axes(3, 3);
    for (int axis = 0; axis < 3; ++axis) {
        const TurnWindow& window = kTurnWindows[static_cast<std::size_t>(axis)];
        const int first = ind[window.begin];
        const int count = std::max(ind[window.end] - window.cut - first, 0);
        axes.setRow(axis, rotationAxis(std::span(bufferedData)
                                           .subspan(static_cast<std::size_t>(first),
                                                    static_cast<std::size_t>(count)),
                                       fit));
    }
    return axes;
}

// ---- Test ----

bool Magnetometer::testCalibration() {
    setStageRows();
    if (run().flowType() == FlowType::Minimal) {
        return true;
    }
    ComputeStaticSegmentsMeans();
    ComputeStaticSegmentsStds();
    Ellipsoid fit;
    const Vector center = fit.circleCenter(bufferedData);
    TAVOCAL_LOG(Debug, "Magnetometer::testCalibration", "center is: " + compactRow(center));
    const std::array<bool, 5> results = {TestMagSTD(*this), TestStaticValues(*this),
                                         TestMagValues(*this, center), TestDirection(*this, center),
                                         TestMagScale(*this, fit)};
    return std::all_of(results.begin(), results.end(), [](bool passed) { return passed; });
}

}  // namespace tavocal
