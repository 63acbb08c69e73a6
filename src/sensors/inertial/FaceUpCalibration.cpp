#include "sensors/inertial/FaceUpCalibration.h"

#include <string>

#include "base/Failures.h"
#include "calibration/InertialBlock.h"
#include "numerics/Vector.h"
#include "sensors/inertial/InertialSensor.h"
#include "sensors/inertial/StageStatistics.h"
#include "sensors/model/Verdict.h"

namespace tavocal {

namespace {

constexpr const char* kOffsetOfWrongAxis =
    "Calculated offset is too high. Check that axis mapping is correct. Note That per-model "
    "calibration is a prerequisite for running a Face Up calibration.\n";

// Whether the offset would pass if the sensor's Z axis pointed the other way.
bool passesWithZFlipped(const InertialSensor& sensor, const Vector& offset) {
    Vector flipped = offset;
    const double expectedZ = sensor.expectedFaceUp[2];
    flipped[2] = -(expectedZ + offset[2]) - expectedZ;
    return largestMagnitude(flipped) <= sensor.faceUpOffsetLimit;
}

// Throws with the reasons if the result is no good.
void judge(InertialSensor& sensor, const Vector& offset, const Vector& deviation) {
    Verdict verdict(sensor, "Calibration");
    verdict.judge(
        refusedAbove("offset", largestMagnitude(offset), sensor.faceUpOffsetLimit, offset),
        "Offset",
        passesWithZFlipped(sensor, offset) ? kOffsetOfWrongAxis
                                           : "Calculated offset is too high.\n",
        sensor.samplingUnit);
    verdict.judge(
        refusedAbove("noise", largestMagnitude(deviation), sensor.faceUpStdLimit, deviation),
        "StandardDeviation", "Data standard deviation is too high. Device should be motionless.\n",
        sensor.samplingUnit);
    verdict.judgeFinite(countNotFinite(offset) + countNotFinite(deviation));
    if (verdict.failed()) {
        throw CalibrationException("Calibration failed for sensor " + sensor.name +
                                   ". Reason: " + verdict.reasons());
    }
}

}  // namespace

void faceUpCalibrate(InertialSensor& sensor) {
    CalibrationBlock block = sensor.originalCalibration;
    if (block.empty()) {
        block = sensor.prependFormat(sensor.getStaticDefault());
    }
    if (block.size() < kStaticBlockSize) {
        throw CalibrationException("Invalid calibration data size");
    }
    const auto [mean, deviation] = faceUpStatistics(sensor);
    sensor.report.addVector(mean, "Averages", "The measured averages of the calibration process");
    sensor.report.addVector(sensor.expectedFaceUp, "ExpectedAverages",
                            "The averages that are expected at a perfectly calibrated system");
    // What the raw reading shows against what the firmware's own matrix would give.
    const Vector offset = mean - sensor.reversal.reverseMatrix * sensor.expectedFaceUp;
    sensor.report.addVector(offset, "Offset", "The calculated offset of the sensor");
    sensor.report.addVector(deviation, "StandardDeviation",
                            "The standard deviation of the sampled sensor data");
    sensor.report.addVector(mean - offset, "CalibratedAverages",
                            "Measured averages after applying the calculated calibration");
    sensor.offsetVector = offset;
    sensor.noiseVector = deviation;
    judge(sensor, offset, deviation);
    sensor.report.setAttribute("Success", "true");
    storeOffset(block, convertOffset(offset, sensor.samplingUnit, sensor.firmwareUnit));
    sensor.calibrationToWrite = block;
}

}  // namespace tavocal
