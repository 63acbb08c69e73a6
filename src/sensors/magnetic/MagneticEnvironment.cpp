#include "sensors/magnetic/MagneticEnvironment.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "base/Failures.h"
#include "base/Text.h"
#include "log/Logger.h"
#include "numerics/Rotations.h"
#include "numerics/Statistics.h"
#include "sensors/magnetic/OperatorMovement.h"
#include "sensors/magnetic/SampleCloud.h"
#include "sensors/model/RunContext.h"
#include "sensors/model/Sensor.h"
#include "sensors/model/Verdict.h"

namespace tavocal {

namespace {

constexpr double kEllipsoidErrorLimit = 0.05;
constexpr double kDipAngleDeviationLimit = 3.5;
constexpr double kDipAngleRangeLimit = 17.0;

constexpr const char* kCheckName = "MagneticEnvironment";
constexpr const char* kFitError = "error of the ellipsoid fit";
constexpr const char* kFitName = "Magnetometer::findFit";

int asIndex(std::uint32_t count) {
    return static_cast<int>(std::min<std::uint32_t>(count, std::numeric_limits<int>::max()));
}

}  // namespace

MagneticEnvironment::MagneticEnvironment(Sensor& owner) : sensor(owner) {}

void MagneticEnvironment::add(const Sample& sample) {
    if (!fitDone) {
        const std::lock_guard<std::mutex> lock(dataMutex);
        sensor.bufferedData.push_back(sample);
        return;
    }
    const double angle = dipAngle(sample);
    const std::lock_guard<std::mutex> lock(dataMutex);
    dipAngles.push_back(angle);
    bufferedData_testPhase.push_back(sample);
}

double MagneticEnvironment::dipAngle(const Sample& sample) const {
    return angleBetween(preTestFit.apply(sample.values), {0.0, 0.0, 1.0}) * kDegreesPerRadian;
}

// ---- The operator's movements ----

std::vector<Sample> MagneticEnvironment::rotationSamples(int first, int last) const {
    const std::lock_guard<std::mutex> lock(dataMutex);
    const std::vector<Sample>& samples = sensor.bufferedData;
    if (first < 0 || last < first || static_cast<std::size_t>(last) >= samples.size()) {
        throw CalibrationException("Index of bufferedData invalid.");
    }
    return {samples.begin() + first, samples.begin() + last + 1};
}

bool MagneticEnvironment::singleRotation(int first, int last, int& axis) {
    const OperatorMovement rotation = judgeRotation(rotationSamples(first, last));
    axis = rotation.axis();
    record(rotation.extent, "range.Max()");
    record(rotation.wayBack, "difference");
    return rotation.followed();
}

bool MagneticEnvironment::threeRotations(const std::vector<std::uint32_t>& boundaries) {
    constexpr const char* kName = "Magnetometer::checkMagPreTest_threeRotations";
    if (boundaries.size() < 3) {
        throw CalibrationException("Index of bufferedData invalid.");
    }
    std::array<bool, 3> followed{};
    std::array<bool, 3> rotated{};
    int first = 0;
    for (std::size_t i = 0; i < followed.size(); ++i) {
        const int end = asIndex(boundaries[i]);
        const OperatorMovement rotation = judgeRotation(rotationSamples(first, end - 1));
        followed[i] = rotation.followed();
        rotated[static_cast<std::size_t>(rotation.axis())] = true;
        first = end;
    }
    const auto report = [](const char* stem, const char* tail, const std::array<bool, 3>& values) {
        for (std::size_t i = 0; i < values.size(); ++i) {
            TAVOCAL_LOG(Info, kName,
                        stem + std::to_string(i + 1) + tail + (values[i] ? ": 1" : ": 0"));
        }
    };
    report("rotation", "_followed", followed);
    report("axis", "_rotated", rotated);
    const auto axes = std::count(rotated.begin(), rotated.end(), true);
    const Judgement turned = refusedBelow("axes turned about", static_cast<double>(axes), 3.0);
    record(turned, "axis_rotated");
    return turned.passed && std::count(followed.begin(), followed.end(), true) == 3;
}

bool MagneticEnvironment::translation() {
    Sample first;
    Sample last;
    {
        const std::lock_guard<std::mutex> lock(dataMutex);
        if (bufferedData_testPhase.empty()) {
            throw CalibrationException("length of bufferedData_testPhase invalid.");
        }
        first = bufferedData_testPhase.front();
        last = bufferedData_testPhase.back();
    }
    const OperatorMovement walk = judgeWalk(first, last);
    record(walk.extent, "norm");
    record(walk.wayBack, "difference");
    return walk.followed();
}

// The report doesn't tell of movements.
void MagneticEnvironment::record(Judgement judgement, const char* parameter) const {
    judgement.sensor = sensor.getDisplayName();
    judgement.check = "OperatorMovement";
    judgement.parameter = parameter;
    sensor.run().judged(std::move(judgement));
}

// ---- The fit ----

void MagneticEnvironment::endRotations(double minSampleSpacing) {
    findFit(minSampleSpacing);
    fitDone = true;
}

void MagneticEnvironment::findFit(double minSampleSpacing) {
    try {
        fitRotations(minSampleSpacing);
    } catch (const CalibrationException&) {
        throw;
    } catch (const MathException&) {
        failFit();
    } catch (const std::exception&) {
        TAVOCAL_LOG(Error, kFitName, "The environment is too noisy for calibrating");
        throw CalibrationException("The environment is too noisy for calibrating");
    }
}

void MagneticEnvironment::failFit() {
    Verdict verdict(sensor, kCheckName);
    sensor.report.beginSubtree("Magnetic_Environment_Test");
    verdict.judge(
        acceptedUpTo(kFitError, std::numeric_limits<double>::quiet_NaN(), kEllipsoidErrorLimit),
        "Ellipsoid",
        "Failed to calculate ellipsoid fit because of large magnetic interface. Check "
        "your environment");
    sensor.report.endSubtree();
    TAVOCAL_LOG(Error, kFitName, "Math exception was thrown when try to calc ellipsoid error");
    throw CalibrationException(verdict.reasons());
}

// Works on a copy of the samples: those that arrive meanwhile don't wait, still count to the
// rotations, and stay out of the fit.
void MagneticEnvironment::fitRotations(double minSampleSpacing) {
    std::vector<Sample> rotations;
    {
        const std::lock_guard<std::mutex> lock(dataMutex);
        rotations = sensor.bufferedData;
    }
    const std::vector<Sample> cloud = spreadSamples(rotations, minSampleSpacing);
    preTestFit = Ellipsoid(cloud, 1.0);
    judge(acceptedUpTo(kFitError, preTestFit.meanError(cloud, 1.0), kEllipsoidErrorLimit),
          "EllipsoidError", "the error of the ellipsoid fit",
          "The environment is not good for calibrating, ellipsoid error is too high",
          Unit::unknown);
}

// ---- The verdict ----

void MagneticEnvironment::evaluate() {
    std::vector<double> angles;
    {
        const std::lock_guard<std::mutex> lock(dataMutex);
        angles = dipAngles;
    }
    if (angles.empty()) {
        throw CalibrationException("length of bufferedData_testPhase invalid.");
    }
    judge(acceptedUpTo("spread of the dip angle", stdDev(angles), kDipAngleDeviationLimit),
          "Dip Angle STD", "the standard deviation of the dip angles",
          "The environment is not good for calibrating, dip angle standard deviation is too high",
          Unit::degree);
    const auto [smallest, largest] = std::minmax_element(angles.begin(), angles.end());
    judge(acceptedUpTo("range of the dip angle", *largest - *smallest, kDipAngleRangeLimit),
          "Dip Angle Range", "the range of the dip angles",
          "The environment is not good for calibrating, dip angle range is too high", Unit::degree);
    sensor.report.setAttribute("Success", "true");
}

void MagneticEnvironment::judge(Judgement judgement, const char* parameter, const char* comment,
                                const char* reason, Unit unit) {
    sensor.report.addScalar(judgement.value, parameter, comment);
    Verdict verdict(sensor, kCheckName);
    verdict.judge(std::move(judgement), parameter, reason, unit);
    if (verdict.failed()) {
        throw CalibrationException(verdict.reasons());
    }
}

}  // namespace tavocal
