#include "sensors/inertial/QualityGate.h"

#include <algorithm>
#include <cmath>
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

std::vector<double> asList(const Vector& vector) {
    return {vector.begin(), vector.end()};
}

bool irreversible(const Matrix& matrix) {
    return std::abs(determinant(matrix)) < kSmallestDeterminant;
}

}  // namespace

QualityGate::QualityGate(InertialSensor& judged) : sensor(judged) {}

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
    if (sensor.calibrationFailed) {
        throw CalibrationException("Calibration failed for sensor " + sensor.getDisplayName() +
                                   ". Reason: " + sensor.failureReason);
    }
    sensor.report.setAttribute("Success", "true");
    TAVOCAL_LOG(Insane, kLogName, "Finished InertialSensor::checkSuccess");
}

// The report names the first failure, the reason lists them all.
void QualityGate::fail(const std::string& parameter, const std::string& text) {
    if (!sensor.calibrationFailed) {
        sensor.report.setAttribute("FailureParameter", parameter);
    }
    sensor.calibrationFailed = true;
    sensor.failureReason += text;
}

// ---- The full gate ----

void QualityGate::checkSuccessGate() {
    open(sensor.stageMeans);
    if (largestMagnitude(sensor.offsetVector) > sensor.limits.offsetLimit) {
        fail("Offset1", "Calculated offset is too high.\n");
    }
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
    checkNorms(norms, error / count);
    if (largestMagnitude(sensor.noiseVector) > sensor.limits.whiteNoiseLimit) {
        fail("White Noise", "Calculated white noise is too high.\n");
    }
    checkReversibility();
    checkMeanNorm(norms);
    checkFinite();
    close();
}

void QualityGate::checkScaleAndRotation() {
    const SvdResult s = svd(sensor.scaleMatrix);
    bool tooHigh = false;
    for (int i = 0; i < 3; ++i) {
        tooHigh = tooHigh || std::abs(s.singular[i][i] - 1.0) > sensor.limits.scaleLimit;
    }
    if (tooHigh) {
        fail("Scale", "Calculated scale is too high.\n");
    }
    const Matrix rotation = s.left * transpose(s.right);
    const double angle = convertUnit(norm(rotationVector(rotation)), Unit::radian, Unit::degree);
    if (angle > sensor.limits.rotationLimit) {
        fail("Rotation", "Calculated rotation is too high.\n");
    }
}

void QualityGate::checkNorms(const Vector& norms, double meanError) {
    sensor.report.addVector(
        norms, "NormSTD",
        "The calculated norm standard deviation of the sensor during the calibration");
    if (stdDev(asList(norms)) > sensor.limits.normStdLimit) {
        fail("norm standard deviation", "Calculated norm standard deviation is too high.\n");
    }
    if (meanError > sensor.limits.expectedErrorLimit) {
        fail("expected error vs calibrated", "Expected error vs calibrated is too high.\n");
    }
    sensor.report.addVector(sensor.noiseVector, "WhiteNoise",
                            "The calculated white noise of the sensor during the calibration");
}

void QualityGate::checkReversibility() {
    if (irreversible(sensor.axisMapping)) {
        fail("AxisMapping", "Irreversible axis mapping matrix created.\n");
    }
    if (irreversible(sensor.scaleMatrix)) {
        fail("scale", "Irreversible scale matrix created.\n");
    }
}

void QualityGate::checkMeanNorm(const Vector& norms) {
    const double m = mean(asList(norms));
    if (m < sensor.limits.expectedNorm - sensor.limits.normTolerance) {
        fail("norm variance", "Calculated norm value is too low.\n");
    }
    if (m > sensor.limits.expectedNorm + sensor.limits.normTolerance) {
        fail("norm variance", "Calculated norm value is too high.\n");
    }
}

// Every comparison with a NaN is false, so none of the other checks refuses one. A mean that is
// none would make them all pass, however good the rest is.
void QualityGate::checkFinite() {
    if (!allFinite(sensor.offsetVector) || !allFinite(sensor.scaleMatrix) ||
        !allFinite(sensor.axisMapping) || !allFinite(sensor.stageMeans) ||
        !allFinite(sensor.noiseVector)) {
        fail("Not finite", "Calculated calibration is not finite.\n");
    }
}

void QualityGate::reportCalibrated(const std::string& rows, int count) {
    sensor.report.addAttributed("CalibratedAverages",
                                "Measured averages after applying the calculated calibration", rows,
                                "Rows", std::to_string(count), "Cols", "3");
}

// ---- The four-step gate ----

void QualityGate::checkSuccess(const Matrix& means) {
    open(means);
    if (std::any_of(sensor.offsetVector.begin(), sensor.offsetVector.end(), [this](double offset) {
            return std::abs(offset) > sensor.limits.offsetLimit;
        })) {
        fail("Offset2", "Calculated offset is too high.\n");
    }
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
    sensor.report.addAttributed("NormVariance",
                                "The calculated norm variance of the sensor during the calibration",
                                fixedText(v));
    if (v > sensor.limits.normStdLimit) {
        fail("Norm variance", "Calculated norm variance is too high.\n");
    }
    if (error / n > sensor.limits.expectedErrorLimit) {
        fail("expected error", "Expected error vs calibrated is too high.\n");
    }
    sensor.report.addVector(sensor.noiseVector, "WhiteNoise",
                            "The calculated white noise of the sensor during the calibration");
    if (std::any_of(sensor.noiseVector.begin(), sensor.noiseVector.end(),
                    [this](double noise) { return noise > sensor.limits.whiteNoiseLimit; })) {
        fail("Noise", "Calculated white noise is too high.\n");
    }
    if (irreversible(sensor.scaleMatrix) || irreversible(sensor.axisMapping)) {
        fail("Axis Mapping", "Irreversible matrix created");
    }
    checkFinite();
    close();
}

// Here rotationLimit bounds the elements off the diagonal.
void QualityGate::checkScaleElements() {
    bool scaleFailed = false;
    bool rotationFailed = false;
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            const double element = sensor.scaleMatrix[r][c];
            if (r == c && !scaleFailed && std::abs(element - 1.0) > sensor.limits.scaleLimit) {
                scaleFailed = true;
                fail("Scale", "Calculated scale is too high.\n");
            }
            if (r != c && !rotationFailed && std::abs(element) > sensor.limits.rotationLimit) {
                rotationFailed = true;
                fail("Rotation", "Calculated rotation is too high.\n");
            }
        }
    }
}

// A gyroscope's means are turns, from which the offset has been taken already.
Vector QualityGate::calibrated(const Vector& mean) const {
    if (sensor.name == kGyroscopeName) {
        return (sensor.scaleMatrix * sensor.axisMapping) * mean;
    }
    return sensor.calibratedVector(mean);
}

}  // namespace tavocal
