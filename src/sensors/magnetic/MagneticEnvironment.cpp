#include "sensors/magnetic/MagneticEnvironment.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>

#include "base/Failures.h"
#include "base/Text.h"
#include "log/Logger.h"
#include "numerics/Rotations.h"
#include "numerics/Statistics.h"
#include "sensors/magnetic/SampleCloud.h"
#include "sensors/model/SampleWindows.h"
#include "sensors/model/Sensor.h"

namespace tavocal {

namespace {

constexpr double kMagMotionThres_rotation = 400.0;
constexpr double kBeginEndDifferenceThres_rotation = 100.0;
constexpr double kMagMovementThres_testPhase_min = 10.0;
constexpr double kMagMovementThres_testPhase_max = 40.0;
constexpr double kBeginEndDifferenceThres_testPhase = 100.0;
constexpr double kEllipsoidErrorLimit = 0.05;
constexpr double kDipAngleDeviationLimit = 3.5;
constexpr double kDipAngleRangeLimit = 17.0;

constexpr const char* kFitName = "Magnetometer::findFit";

// Of each axis; NaN for one with a value that is not finite.
Vector axisRanges(const std::vector<Sample>& samples, IndexWindow window) {
    Vector ranges(3);
    for (int axis = 0; axis < 3; ++axis) {
        ranges[axis] = finiteAxisRange(samples, window, axis);
    }
    return ranges;
}

// NaN if any value is.
double largestOf(const Vector& values) {
    double largest = values[0];
    for (const double value : values) {
        if (value > largest || std::isnan(value)) {
            largest = value;
        }
    }
    return largest;
}

// The first of equals; 0 if there is no number.
int indexOfSmallest(const Vector& values) {
    int index = 0;
    double smallest = std::numeric_limits<double>::max();
    for (int i = 0; i < values.size(); ++i) {
        if (values[i] < smallest) {
            smallest = values[i];
            index = i;
        }
    }
    return index;
}

// A NaN is not below.
bool allBelow(const Vector& values, double limit) {
    return std::all_of(values.begin(), values.end(),
                       [limit](double value) { return value < limit; });
}

std::string listText(const Vector& values) {
    return fixedText(values[0]) + ",\n" + fixedText(values[1]) + ",\n" + fixedText(values[2]);
}

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

bool MagneticEnvironment::singleRotation(int first, int last, int& axis) const {
    constexpr const char* kName = "Magnetometer::checkMagPreTest_singleRotation";
    Vector range;
    Vector difference;
    {
        const std::lock_guard<std::mutex> lock(dataMutex);
        const std::vector<Sample>& samples = sensor.bufferedData;
        const auto end = static_cast<std::size_t>(last);
        if (first < 0 || last < first || end >= samples.size()) {
            throw CalibrationException("Index of bufferedData invalid.");
        }
        const auto begin = static_cast<std::size_t>(first);
        range = axisRanges(samples, {first, last});
        difference = absValues(samples[begin].values - samples[end].values);
    }
    axis = indexOfSmallest(range);
    const double largest = largestOf(range);
    TAVOCAL_LOG(Info, kName, "===== checkMagPreTest_singleRotation =====");
    TAVOCAL_LOG(Info, kName, "range.Max(): " + fixedText(largest));
    TAVOCAL_LOG(Info, kName, "magMotionThres_rotation: " + fixedText(kMagMotionThres_rotation));
    TAVOCAL_LOG(Info, kName, "difference: " + listText(difference));
    TAVOCAL_LOG(
        Info, kName,
        "beginEndDifferenceThres_rotation: " + fixedText(kBeginEndDifferenceThres_rotation));
    return std::isfinite(largest) && largest > kMagMotionThres_rotation &&
           allBelow(difference, kBeginEndDifferenceThres_rotation);
}

bool MagneticEnvironment::threeRotations(const std::vector<std::uint32_t>& boundaries) const {
    constexpr const char* kName = "Magnetometer::checkMagPreTest_threeRotations";
    if (boundaries.size() < 3) {
        throw CalibrationException("Index of bufferedData invalid.");
    }
    std::array<bool, 3> followed{};
    std::array<bool, 3> rotated{};
    int first = 0;
    for (std::size_t i = 0; i < followed.size(); ++i) {
        const int end = asIndex(boundaries[i]);
        int axis = 0;
        followed[i] = singleRotation(first, end - 1, axis);
        rotated[static_cast<std::size_t>(axis)] = true;
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
    const auto isTrue = [](bool value) { return value; };
    return std::all_of(followed.begin(), followed.end(), isTrue) &&
           std::all_of(rotated.begin(), rotated.end(), isTrue);
}

bool MagneticEnvironment::translation() const {
    constexpr const char* kName = "Magnetometer::checkMagPreTest_translation";
    Vector change;
    {
        const std::lock_guard<std::mutex> lock(dataMutex);
        if (bufferedData_testPhase.empty()) {
            throw CalibrationException("length of bufferedData_testPhase invalid.");
        }
        change = bufferedData_testPhase.back().values - bufferedData_testPhase.front().values;
    }
    const double d = norm(change);
    const Vector difference = absValues(change);
    TAVOCAL_LOG(Info, kName, "===== checkMagPreTest_translation =====");
    TAVOCAL_LOG(Info, kName, "(currentPoint - LastData).norm(): " + fixedText(d));
    TAVOCAL_LOG(Info, kName,
                "magMovementThres_testPhase_min: " + fixedText(kMagMovementThres_testPhase_min));
    TAVOCAL_LOG(Info, kName,
                "magMovementThres_testPhase_max: " + fixedText(kMagMovementThres_testPhase_max));
    TAVOCAL_LOG(Info, kName, "difference: " + listText(difference));
    TAVOCAL_LOG(
        Info, kName,
        "beginEndDifferenceThres_testPhase: " + fixedText(kBeginEndDifferenceThres_testPhase));
    return d > kMagMovementThres_testPhase_min && d < kMagMovementThres_testPhase_max &&
           allBelow(difference, kBeginEndDifferenceThres_testPhase);
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
        sensor.report.beginSubtree("Magnetic_Environment_Test");
        sensor.report.setAttribute("FailureParameter", "Ellipsoid");
        sensor.report.endSubtree();
        TAVOCAL_LOG(Error, kFitName, "Math exception was thrown when try to calc ellipsoid error");
        throw CalibrationException(
            "Failed to calculate ellipsoid fit because of large magnetic interface. Check your "
            "environment");
    } catch (const std::exception&) {
        TAVOCAL_LOG(Error, kFitName, "The environment is too noisy for calibrating");
        throw CalibrationException("The environment is too noisy for calibrating");
    }
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
    const double error = preTestFit.meanError(cloud, 1.0);
    sensor.report.addScalar(error, "EllipsoidError", "the error of the ellipsoid fit");
    if (!(error <= kEllipsoidErrorLimit)) {
        fail("EllipsoidError",
             "The environment is not good for calibrating, ellipsoid error is too high");
    }
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
    const double deviation = stdDev(angles);
    sensor.report.addScalar(deviation, "Dip Angle STD", "the standard deviation of the dip angles");
    if (!(deviation <= kDipAngleDeviationLimit)) {
        fail("Dip Angle STD",
             "The environment is not good for calibrating, dip angle standard deviation is too "
             "high");
    }
    const auto [smallest, largest] = std::minmax_element(angles.begin(), angles.end());
    const double range = *largest - *smallest;
    sensor.report.addScalar(range, "Dip Angle Range", "the range of the dip angles");
    if (!(range <= kDipAngleRangeLimit)) {
        fail("Dip Angle Range",
             "The environment is not good for calibrating, dip angle range is too high");
    }
    sensor.report.setAttribute("Success", "true");
}

void MagneticEnvironment::fail(const char* parameter, const char* message) {
    sensor.report.setAttribute("FailureParameter", parameter);
    throw CalibrationException(message);
}

}  // namespace tavocal
