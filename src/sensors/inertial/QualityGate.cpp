#include "sensors/inertial/QualityGate.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <utility>
#include <vector>

#include "base/Failures.h"
#include "base/Text.h"
#include "log/Logger.h"
#include "numerics/Decompositions.h"
#include "numerics/Rotations.h"
#include "numerics/Statistics.h"
#include "numerics/TextForms.h"
#include "sensors/inertial/InertialSensor.h"
#include "vocabulary/SensorTypes.h"
#include "vocabulary/Unit.h"

namespace tavocal {

namespace {

constexpr const char* kLogName = "InertialSensor::checkSuccess";
constexpr double kSmallestDeterminant = 0.1;

constexpr const char* kOffsetTooHigh = "Calculated offset is too high.\n";
constexpr const char* kScaleTooHigh = "Calculated scale is too high.\n";
constexpr const char* kRotationTooHigh = "Calculated rotation is too high.\n";
constexpr const char* kErrorTooHigh = "Expected error vs calibrated is too high.\n";

std::vector<double> asList(const Vector& vector) {
    return {vector.begin(), vector.end()};
}

// The largest; -inf if there is no number.
template <typename Values>
double largestOf(const Values& values) {
    return std::accumulate(values.begin(), values.end(), -std::numeric_limits<double>::infinity(),
                           [](double a, double b) { return std::fmax(a, b); });
}

}  // namespace

QualityGate::QualityGate(InertialSensor& judged) : sensor(judged), verdict(judged, "Calibration") {}

void QualityGate::open(const Matrix& means) {
    TAVOCAL_LOG(Insane, kLogName, "Started InertialSensor::checkSuccess");
    sensor.report.addMatrix(means, "Averages", "The measured averages of the calibration process");
    sensor.report.addMatrix(sensor.expectedValues, "ExpectedAverages",
                            "The averages that are expected at a perfectly calibrated system");
    sensor.report.addVector(sensor.offsetVector, "Offset", "The calculated offset of the sensor");
    sensor.report.addMatrix(sensor.scaleMatrix, "Scale",
                            "The calculated scale matrix of the sensor");
    sensor.report.addMatrix(sensor.axisMapping, "AxisMapping",
                            "The calculated axis mapping of the sensor");
}

void QualityGate::close() {
    sensor.calibrationFailed = verdict.failed();
    sensor.failureReason = verdict.reasons();
    if (sensor.calibrationFailed) {
        throw CalibrationException("Calibration failed for sensor " + sensor.getDisplayName() +
                                   ". Reason: " + sensor.failureReason);
    }
    sensor.report.setAttribute("Success", "true");
    TAVOCAL_LOG(Insane, kLogName, "Finished InertialSensor::checkSuccess");
}

// ---- The full gate ----

void QualityGate::checkSuccessGate() {
    open(sensor.stageMeans);
    verdict.judge(refusedAbove("offset", largestMagnitude(sensor.offsetVector),
                               sensor.limits.offsetLimit, sensor.offsetVector),
                  "Offset1", kOffsetTooHigh, sensor.samplingUnit);
    checkScaleAndRotation();

    const int count = sensor.stillStageCount;
    Vector norms(count);
    double error = 0.0;
    std::string rows;
    for (int i = 0; i < count; ++i) {
        const Vector c = sensor.calibratedStageMean(i);
        norms[i] = norm(c);
        error = error + norm(sensor.expectedRow(i) - c);
        rows += compactRow(c);
    }
    reportCalibrated(rows, count);
    sensor.report.addVector(
        norms, "NormSTD",
        "The calculated norm standard deviation of the sensor during the calibration");
    verdict.judge(refusedAbove("spread of the lengths", stdDev(asList(norms)),
                               sensor.limits.normStdLimit, norms),
                  "norm standard deviation", "Calculated norm standard deviation is too high.\n",
                  unitOfMeans());
    verdict.judge(refusedAbove("mean error", error / count, sensor.limits.expectedErrorLimit),
                  "expected error vs calibrated", kErrorTooHigh, unitOfMeans());
    checkNoise(largestMagnitude(sensor.noiseVector), "White Noise");
    checkReversibility();
    checkMeanNorm(norms);
    checkFinite();
    close();
}

void QualityGate::checkScaleAndRotation() {
    const SvdResult s = svd(sensor.scaleMatrix);
    const Vector deviations{std::abs(s.singular[0][0] - 1.0), std::abs(s.singular[1][1] - 1.0),
                            std::abs(s.singular[2][2] - 1.0)};
    verdict.judge(
        refusedAbove("scale", largestOf(deviations), sensor.limits.scaleLimit, deviations), "Scale",
        kScaleTooHigh);
    const Matrix rotation = s.left * transpose(s.right);
    const double angle = convertUnit(norm(rotationVector(rotation)), Unit::radian, Unit::degree);
    verdict.judge(refusedAbove("rotation", angle, sensor.limits.rotationLimit), "Rotation",
                  kRotationTooHigh, Unit::degree);
}

void QualityGate::checkNoise(double noise, const char* parameter) {
    sensor.report.addVector(sensor.noiseVector, "WhiteNoise",
                            "The calculated white noise of the sensor during the calibration");
    verdict.judge(
        refusedAbove("white noise", noise, sensor.limits.whiteNoiseLimit, sensor.noiseVector),
        parameter, "Calculated white noise is too high.\n", sensor.samplingUnit);
}

void QualityGate::checkReversibility() {
    verdict.judge(refusedBelow("determinant of the axis mapping",
                               std::abs(determinant(sensor.axisMapping)), kSmallestDeterminant),
                  "AxisMapping", "Irreversible axis mapping matrix created.\n");
    verdict.judge(refusedBelow("determinant of the scale",
                               std::abs(determinant(sensor.scaleMatrix)), kSmallestDeterminant),
                  "scale", "Irreversible scale matrix created.\n");
}

void QualityGate::checkMeanNorm(const Vector& norms) {
    const double m = mean(asList(norms));
    const double lowest = sensor.limits.expectedNorm - sensor.limits.normTolerance;
    const double highest = sensor.limits.expectedNorm + sensor.limits.normTolerance;
    verdict.judge(
        refusedOutside("mean length", m, lowest, highest, norms), "norm variance",
        m < lowest ? "Calculated norm value is too low.\n" : "Calculated norm value is too high.\n",
        unitOfMeans());
}

// A mean that is no number would make all other checks pass, however good the rest is.
void QualityGate::checkFinite() {
    verdict.judgeFinite(
        countNotFinite(sensor.offsetVector) + countNotFinite(flattened(sensor.scaleMatrix)) +
        countNotFinite(flattened(sensor.axisMapping)) +
        countNotFinite(flattened(sensor.stageMeans)) + countNotFinite(sensor.noiseVector));
}

void QualityGate::reportCalibrated(const std::string& rows, int count) {
    sensor.report.addAttributed("CalibratedAverages",
                                "Measured averages after applying the calculated calibration", rows,
                                "Rows", std::to_string(count), "Cols", "3");
}

// ---- The four-step gate ----

void QualityGate::checkSuccess(const Matrix& means) {
    open(means);
    verdict.judge(refusedAbove("offset", largestOf(absValues(sensor.offsetVector)),
                               sensor.limits.offsetLimit, sensor.offsetVector),
                  "Offset2", kOffsetTooHigh, sensor.samplingUnit);
    checkScaleElements();

    double sum1 = 0.0;
    double sum2 = 0.0;
    double error = 0.0;
    std::string rows;
    const int n = means.rows();
    for (int i = 0; i < n; ++i) {
        const Vector c = calibrated(row(means, i));
        const double length = norm(c);
        sum1 += length;
        sum2 += length * length;
        error += norm(sensor.expectedRow(i) - c);
        rows += compactRow(c);
    }
    reportCalibrated(rows, n);
    const double v = std::sqrt((sum2 - sum1 * sum1 / n) / n);
    sensor.report.addScalar(v, "NormVariance",
                            "The calculated norm variance of the sensor during the calibration");
    verdict.judge(refusedAbove("spread of the lengths", v, sensor.limits.normStdLimit),
                  "Norm variance", "Calculated norm variance is too high.\n", unitOfMeans());
    verdict.judge(refusedAbove("mean error", error / n, sensor.limits.expectedErrorLimit),
                  "expected error", kErrorTooHigh, unitOfMeans());
    checkNoise(largestOf(sensor.noiseVector), "Noise");
    verdict.judge(refusedBelow("determinants of scale and axis mapping",
                               std::fmin(std::abs(determinant(sensor.scaleMatrix)),
                                         std::abs(determinant(sensor.axisMapping))),
                               kSmallestDeterminant),
                  "Axis Mapping", "Irreversible matrix created");
    checkFinite();
    close();
}

// Here rotationLimit bounds the elements off the diagonal. The reasons stand in the order in which
// the elements, row by row, show them.
void QualityGate::checkScaleElements() {
    std::vector<double> scales;
    std::vector<double> rotations;
    bool rotationFirst = false;
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            const double element = sensor.scaleMatrix[r][c];
            if (r == c) {
                scales.push_back(std::abs(element - 1.0));
            } else {
                rotations.push_back(std::abs(element));
                rotationFirst = rotationFirst || (rotations.back() > sensor.limits.rotationLimit &&
                                                  !(largestOf(scales) > sensor.limits.scaleLimit));
            }
        }
    }
    const auto judgeScale = [&] {
        verdict.judge(refusedAbove("scale", largestOf(scales), sensor.limits.scaleLimit), "Scale",
                      kScaleTooHigh);
    };
    if (!rotationFirst) {
        judgeScale();
    }
    verdict.judge(refusedAbove("elements off the diagonal", largestOf(rotations),
                               sensor.limits.rotationLimit),
                  "Rotation", kRotationTooHigh);
    if (rotationFirst) {
        judgeScale();
    }
}

// The offset has been taken from a gyroscope's turns already.
Vector QualityGate::calibrated(const Vector& mean) const {
    if (sensor.name == kGyroscopeName) {
        return (sensor.scaleMatrix * sensor.axisMapping) * mean;
    }
    return sensor.calibratedVector(mean);
}

Unit QualityGate::unitOfMeans() const {
    return sensor.name == kGyroscopeName ? Unit::degree : sensor.samplingUnit;
}

}  // namespace tavocal
