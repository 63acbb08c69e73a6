#include "app/CrossSensorChecks.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "base/Failures.h"
#include "base/Text.h"
#include "log/Logger.h"
#include "numerics/Rotations.h"
#include "numerics/Statistics.h"
#include "numerics/Vector.h"
#include "sensors/magnetic/Ellipsoid.h"
#include "sensors/model/Assertions.h"
#include "sensors/model/RunContext.h"
#include "sensors/model/SensorTest.h"
#include "sensors/motion/Gyroscope.h"
#include "sensors/motion/RotationTracking.h"
#include "vocabulary/SensorTypes.h"
#include "vocabulary/TestingConfig.h"

namespace tavocal {

namespace {

enum Role : std::size_t { kAcc, kGyro, kMag, kAcc2, kGyro2, kMag2 };

constexpr std::array<const char*, 3> kClassNames = {kAccelerometerName, kGyroscopeName,
                                                    kMagnetometerName};

// The display name of a sensor in this role.
std::string roleName(std::size_t role) {
    return kClassNames[role % 3] + std::string(role < kAcc2 ? "" : "_2");
}

bool isSelected(SelectedClasses selected, Role role) {
    return std::array{selected.accelerometer, selected.gyroscope, selected.magnetometer}[role % 3];
}

enum class Measure {
    DipAngle,
    Turn,
    TurnAcrossHalves,  // of the primary gyroscope against the secondary accelerometer
};

constexpr const char* kExpectedAngle =
    "The difference that is expected at a perfectly calibrated system";
constexpr const char* kThresholdName = "rotation_agreement_degrees";

constexpr TestTexts kGravityTexts = {
    "rotation of gravity", Unit::degree,  "Angles", "difference between gyro and accel", "Expected",
    kExpectedAngle,        kThresholdName};
constexpr TestTexts kFieldTexts = {
    "rotation of the field", Unit::degree,  "Angles", "difference between gyro and mag", "Expected",
    kExpectedAngle,          kThresholdName};

// What the gyroscope is compared with in compareRotation.
struct RotationReference {
    const InertialSensor& sensor;
    Vector center;  // the stage means turn about this point
    const char* testName;
    const char* titleEnd;
    const TestTexts& texts;
    double threshold;  // degrees
};

RotationReference gravityReference(const InertialSensor& acc) {
    return {acc,
            Vector(3),
            "Performing_TestCompareRotation_Gyro_Accel",
            " Gravity rotation test",
            kGravityTexts,
            testingConfig().rotation_agreement_degrees_acc};
}

RotationReference fieldReference(const InertialSensor& mag) {
    return {mag,
            Ellipsoid().circleCenter(mag.bufferedData),
            "Performing_TestCompareRotation_Gyro_Mag",
            " Magnetometer rotation test",
            kFieldTexts,
            testingConfig().rotation_agreement_degrees_mag};
}

// Degrees between the mean of the stage before and that of `stage`, turned back by the gyroscope.
// NaN if one of them is missing. Rounding can carry the cosine of an agreement to the last digit
// beyond 1; that is an angle of 0 and no failure.
double disagreement(const Gyroscope& gyro, const RotationReference& reference, int stage) {
    const auto motion = static_cast<std::size_t>(stage - 1);
    const Matrix& means = reference.sensor.stageMeans;
    if (motion >= gyro.testRotations.size() || stage >= means.rows()) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    const Vector later = row(means, stage) - reference.center;
    const Vector earlier = row(means, stage - 1) - reference.center;
    return clampedAngleBetween(gyro.testRotations[motion] * later, earlier) * kDegreesPerRadian;
}

// A disagreement enters no summary, since it doesn't tell which of the two is wrong.
bool compareStages(Gyroscope& gyro, const RotationReference& reference, int stageCount) {
    SensorTest test(gyro, reference.testName);
    for (int i = 1; i < stageCount; ++i) {
        test.beginStep("step", i);
        Judgement judgement =
            assertVector({disagreement(gyro, reference, i)}, {0.0},
                         gyro.getDisplayName() + " step " + std::to_string(i) + reference.titleEnd,
                         "", reference.threshold);
        judgement.other = reference.sensor.getDisplayName();
        test.judge(judgement, reference.texts);
    }
    return test.passed();
}

}  // namespace

// `first` is held against `second`, which gets the report of a failure.
struct CrossSensorChecks::Comparison {
    Measure measure;
    Role first;
    Role second;
    double limit;  // the largest value that passes
    const char* parameter;
    const char* element;
    const char* comment;
    const char* reason;
};

const std::array<CrossSensorChecks::Comparison, 7> CrossSensorChecks::kComparisons = {{
    {Measure::DipAngle, kAcc, kMag, 6.0, "Dip Angle", "DipAngle", "Dip angle value",
     "Calculated dip angle is too high, check magnetic environment.\n"},
    {Measure::DipAngle, kAcc2, kMag2, 6.0, "Dip Angle", "DipAngle", "Dip angle value acc_2 mag_2",
     "Calculated dip angle by acc_2 and mag_2 is too high, check magnetic environment.\n"},
    {Measure::Turn, kGyro, kMag, 1000.0, "Mag-Gyro Diff", "Gyro-Mag diff",
     "Gyro & Magnetometer difference",
     "Disagreement between magnetometer and gyroscope - check magnetic environment.\n"},
    {Measure::Turn, kGyro2, kMag2, 1000.0, "Mag-Gyro Diff", "Gyro-Mag diff",
     "Gyro_2 & Magnetometer_2 difference",
     "Disagreement between magnetometer_2 and gyroscope_2 - check magnetic environment.\n"},
    {Measure::Turn, kGyro, kAcc, 1.0, "Gyro-Accel Diff", "Gyro-Accel diff",
     "Gyro & Accelerometer difference", "Disagreement between accelerometer and gyroscope.\n"},
    {Measure::Turn, kGyro2, kAcc2, 1.0, "Gyro-Accel Diff", "Gyro-Accel diff",
     "Gyro_2 & Accelerometer_2 difference",
     "Disagreement between accelerometer_2 and gyroscope_2.\n"},
    {Measure::TurnAcrossHalves, kGyro, kAcc2, 1.0, "Gyro-Accel_2 Diff", "Gyro-Accel_2 diff",
     "Gyro & Accelerometer_2 difference", "Disagreement between accelerometer_2 and gyroscope.\n"},
}};

CrossSensorChecks::CrossSensorChecks(const std::vector<std::shared_ptr<Sensor>>& calibratingSensors,
                                     SelectedClasses classes, RunContext& context)
    : selected(classes), run(context) {
    for (const std::shared_ptr<Sensor>& sensor : calibratingSensors) {
        for (std::size_t role = 0; role < sensors.size(); ++role) {
            if (sensor->getDisplayName() == roleName(role)) {
                sensors[role] = std::dynamic_pointer_cast<InertialSensor>(sensor);
            }
        }
    }
}

void CrossSensorChecks::checkCalibration() {
    std::string reasons;
    for (const Comparison& comparison : kComparisons) {
        if (!runs(comparison)) {
            continue;
        }
        const Judgement judgement = judge(comparison);
        run.judged(judgement);
        if (judgement.passed) {
            continue;
        }
        if (reasons.empty()) {
            SensorReport& report = sensors[comparison.second]->report;
            report.setAttribute("Success", "false");
            report.setAttribute("FailureParameter", judgement.parameter);
            report.addScalar(judgement.value, comparison.element, comparison.comment);
        }
        reasons += judgement.reason;
    }
    if (!reasons.empty()) {
        throw CalibrationException("Calibration failed. Reason: " + reasons);
    }
    TAVOCAL_LOG(Insane, "CalibrationManager::checkCalibration",
                "Finished CalibrationManager::checkCalibration");
}

Judgement CrossSensorChecks::judge(const Comparison& comparison) const {
    const InertialSensor& second = *sensors[comparison.second];
    const bool isAngle = comparison.measure == Measure::DipAngle;
    Judgement judgement = acceptedUpTo(isAngle ? "spread of the dip angle" : "error of the turns",
                                       valueOf(comparison), comparison.limit);
    judgement.sensor = second.getDisplayName();
    judgement.other = sensors[comparison.first]->getDisplayName();
    judgement.check = "CrossSensorChecks";
    judgement.unit = isAngle ? Unit::degree : second.samplingUnit;
    judgement.parameter = comparison.parameter;
    judgement.reason = comparison.reason;
    return judgement;
}

bool CrossSensorChecks::runs(const Comparison& comparison) const {
    const bool needsPrimaryAcc = comparison.measure == Measure::TurnAcrossHalves;
    return isSelected(selected, comparison.first) && isSelected(selected, comparison.second) &&
           sensors[comparison.first] != nullptr && sensors[comparison.second] != nullptr &&
           (!needsPrimaryAcc || sensors[kAcc] != nullptr);
}

double CrossSensorChecks::valueOf(const Comparison& comparison) const {
    const InertialSensor& first = *sensors[comparison.first];
    const InertialSensor& second = *sensors[comparison.second];
    switch (comparison.measure) {
        case Measure::DipAngle:
            return dipAngleSpread(first, second);
        case Measure::Turn:
            return rotationDifference(first, second, identity(3));
        case Measure::TurnAcrossHalves:
            break;
    }
    // What the two accelerometers should read in the same positions tells how the frames of the
    // two halves lie against each other.
    return rotationDifference(first, second, sensors[kAcc]->alignToExpected(second.expectedValues));
}

double CrossSensorChecks::dipAngleSpread(const InertialSensor& acc, const InertialSensor& mag) {
    std::vector<double> angles;
    for (int i = 0; i < mag.stillStageCount; ++i) {
        angles.push_back(
            clampedAngleBetween(acc.calibratedSample(i, true), mag.calibratedSample(i, true)));
    }
    return stdDev(angles) / kRadiansPerDegree;
}

double CrossSensorChecks::rotationDifference(const InertialSensor& gyro,
                                             const InertialSensor& other,
                                             const Matrix& alignment) const {
    const std::vector<double> times = run.segmentTimes();
    const auto positions = static_cast<std::size_t>(std::max(gyro.stillStageCount, 0));
    if (times.size() <= 4 * positions) {
        throw CalibrationException("Internal error");
    }
    // The turns go about the vertical, which shows an accelerometer nothing; a secondary
    // magnetometer isn't followed through them either.
    const bool alsoTurns = other.getDisplayName() == kMagnetometerName;
    double largest = 0.0;
    const auto take = [&](std::size_t position, std::size_t stageEnd) {
        const double error = rotationTrackingError(other, gyro, static_cast<int>(position),
                                                   alignment, times[stageEnd], times[stageEnd + 1]);
        if (std::isnan(error) || error > largest) {
            largest = error;
        }
    };
    for (std::size_t i = 0; i < positions; ++i) {
        take(i, 4 * i + 3);
        if (alsoTurns) {
            take(i, 4 * i + 1);
        }
    }
    return largest;
}

bool CrossSensorChecks::compareRotation(const std::shared_ptr<Sensor>& acc,
                                        const std::shared_ptr<Sensor>& gyro,
                                        const std::shared_ptr<Sensor>& mag) const {
    const auto gyroscope = std::dynamic_pointer_cast<Gyroscope>(gyro);
    const auto accelerometer = std::dynamic_pointer_cast<InertialSensor>(acc);
    const auto magnetometer = std::dynamic_pointer_cast<InertialSensor>(mag);
    if (gyroscope == nullptr) {
        return true;
    }
    if (accelerometer != nullptr) {
        return compareStages(*gyroscope, gravityReference(*accelerometer), run.stageCount());
    }
    if (magnetometer != nullptr) {
        return compareStages(*gyroscope, fieldReference(*magnetometer), run.stageCount());
    }
    return true;
}

}  // namespace tavocal
