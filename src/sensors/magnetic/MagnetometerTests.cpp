#include "sensors/magnetic/MagnetometerTests.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "base/Text.h"
#include "log/Logger.h"
#include "numerics/Rotations.h"
#include "numerics/Statistics.h"
#include "numerics/TextForms.h"
#include "sensors/inertial/Assertions.h"
#include "sensors/inertial/InertialSensor.h"
#include "sensors/magnetic/Ellipsoid.h"
#include "sensors/model/RunContext.h"
#include "sensors/model/SecondaryMounting.h"
#include "vocabulary/TestingConfig.h"

namespace tavocal {

namespace {

constexpr int kHeadings = 4;

// How one test stands in the report.
struct TestTexts {
    const char* subtree;
    const char* measuredName;
    const char* measuredComment;
    const char* expectedName;
    const char* expectedComment;
};

constexpr TestTexts kMagStd = {"Performing_TestMagSTD", "StandardDeviation", "The measured noise",
                               "ExpectedDeviation",
                               "noise that is expected at a perfectly calibrated system"};
constexpr TestTexts kStaticValues = {
    "Performing_TestStaticValues", "StaticValue", "The measured static value",
    "ExpectedStaticValue", "static value that is expected at a perfectly calibrated system"};
constexpr TestTexts kMagValues = {"Performing_TestMagValues", "MagnetometerValues",
                                  "The measured Magnetometer values", "ExpectedValues",
                                  "Mag values that is expected at a perfectly calibrated system"};
constexpr TestTexts kDirection = {
    "Performing_TestDirection", "CompassDirection", "The measured compass direction",
    "ExpectedCompassDirection",
    "compass direction that is expected at a perfectly calibrated system"};
constexpr TestTexts kMagScale = {"Performing_TestMagScale", "MagScale", "The measured Mag scale",
                                 "ExpectedMagScale",
                                 "Mag scale that is expected at a perfectly calibrated system"};

using VectorAssert = bool (*)(const Vector& measured, const Vector& expected,
                              const std::string& label, const std::string& note, double threshold);

bool assertSingle(const Vector& measured, const Vector& expected, const std::string& label,
                  const std::string& note, double threshold) {
    return assertDouble(measured[0], expected[0], label, note, threshold);
}

// A test at work: its subtree is open as long as it lives.
class MagnetometerTest {
  public:
    MagnetometerTest(InertialSensor& judged, const TestTexts& reportTexts)
        : sensor(judged), texts(reportTexts) {
        sensor.report.beginSubtree(texts.subtree);
    }
    MagnetometerTest(const MagnetometerTest&) = delete;
    MagnetometerTest& operator=(const MagnetometerTest&) = delete;
    ~MagnetometerTest() { sensor.report.endSubtree(); }

    void judge(VectorAssert passes, const Vector& measured, const Vector& expected,
               const std::string& label, double threshold) {
        const bool ok = passes(measured, expected, label, "", threshold);
        sensor.report.addVector(measured, texts.measuredName, texts.measuredComment);
        sensor.report.addVector(expected, texts.expectedName, texts.expectedComment);
        sensor.report.addAttributed("threshold", "", fixedText(threshold));
        sensor.report.addComment(ok ? ": PASSED" : " FAILED");
        passed = passed && ok;
    }

    bool finish() {
        if (!passed) {
            sensor.run().addFailure(0, sensor.getDisplayName());
        }
        return passed;
    }

  private:
    InertialSensor& sensor;
    const TestTexts& texts;
    bool passed = true;
};

// The standard deviation of one axis over the whole run.
double axisDeviation(const std::vector<Sample>& samples, int axis) {
    std::vector<double> values(samples.size());
    std::transform(samples.begin(), samples.end(), values.begin(),
                   [axis](const Sample& sample) { return sample.values[axis]; });
    return stdDev(values);
}

// The smallest one; one that is not finite comes before all others.
double quietestAxis(const std::vector<Sample>& samples) {
    double quietest = axisDeviation(samples, 0);
    for (int axis = 1; axis < 3; ++axis) {
        const double deviation = axisDeviation(samples, axis);
        if (std::isfinite(quietest) && !(deviation >= quietest)) {
            quietest = deviation;
        }
    }
    return quietest;
}

// ---- Headings ----

// An element of a reading with its sign.
struct SignedAxis {
    int axis;
    double sign;

    double of(const Vector& reading) const { return sign * reading[axis]; }
};

// The readings along the device's axes to the right and up the screen: the heading is the angle
// of the field from `up` towards `right`.
struct HeadingAxes {
    SignedAxis right;
    SignedAxis up;
};

constexpr HeadingAxes kPrimaryAxes = {{0, 1.0}, {1, 1.0}};

// By SecondaryMounting.
constexpr std::array<HeadingAxes, 4> kSecondaryAxes = {
    {{{0, 1.0}, {1, -1.0}}, {{0, -1.0}, {1, 1.0}}, {{1, -1.0}, {0, -1.0}}, {{1, 1.0}, {0, 1.0}}}};

HeadingAxes headingAxesOf(const Sensor& sensor) {
    return sensor.isPrimary() ? kPrimaryAxes
                              : kSecondaryAxes[static_cast<std::size_t>(secondaryMounting(sensor))];
}

// An angle within a turn of it, brought to 0 to 360.
double wrapped(double degrees) {
    if (degrees < 0.0) {
        return degrees + 360.0;
    }
    return degrees > 360.0 ? degrees - 360.0 : degrees;
}

}  // namespace

Vector calcHeadings(const InertialSensor& sensor, const Vector& center) {
    const HeadingAxes axes = headingAxesOf(sensor);
    const int stages = std::min({sensor.run().stageCount(), kHeadings, sensor.stageMeans.rows()});
    Vector headings(kHeadings);
    for (int i = 0; i < stages; ++i) {
        const Vector d = row(sensor.stageMeans, i) - center;
        headings[i] = wrapped(std::atan2(axes.right.of(d), axes.up.of(d)) * kDegreesPerRadian);
    }
    return headings;
}

bool TestMagSTD(InertialSensor& sensor) {
    MagnetometerTest test(sensor, kMagStd);
    for (int i = 0; i < sensor.run().stageCount(); ++i) {
        const std::string step = "step " + std::to_string(i);
        sensor.report.addComment(step);
        test.judge(assertVector, row(sensor.stageStds, i), Vector(3),
                   "motionless " + sensor.getDisplayName() + " " + step + " Std value test",
                   testingConfig().mag_Threshold_Noise);
    }
    return test.finish();
}

bool TestStaticValues(InertialSensor& sensor) {
    MagnetometerTest test(sensor, kStaticValues);
    test.judge(assertSingle, {quietestAxis(sensor.bufferedData)}, {0.0},
               "Magnetometer static values test", testingConfig().mag_Static_Threshold);
    return test.finish();
}

bool TestMagValues(InertialSensor& sensor, const Vector& center) {
    MagnetometerTest test(sensor, kMagValues);
    const Vector h = calcHeadings(sensor, center);
    // The first entry is the turn from the last stage to the first.
    Vector turns = h - Vector{h[3], h[0], h[1], h[2]};
    std::transform(turns.begin(), turns.end(), turns.begin(), wrapped);
    test.judge(assertAngles, turns, {90.0, 90.0, 90.0, 90.0}, "Magnetometer values test",
               testingConfig().mag_Threshold_angles);
    return test.finish();
}

bool TestDirection(InertialSensor& sensor, const Vector& center) {
    MagnetometerTest test(sensor, kDirection);
    const Vector h = calcHeadings(sensor, center);
    TAVOCAL_LOG(Debug, "Magnetometer::TestDirection", "mag direction is: " + compactRow(h));
    test.judge(assertAngles, h, {0.0, 90.0, 180.0, 270.0}, "Compass direction test",
               testingConfig().mag_Threshold_angles);
    return test.finish();
}

bool TestMagScale(InertialSensor& sensor, const Ellipsoid& fit) {
    MagnetometerTest test(sensor, kMagScale);
    test.judge(assertSingle, {fit.axisGain[1] / fit.axisGain[0]}, {1.0}, "Magnet scale test",
               testingConfig().mag_scale_Thershold);
    return test.finish();
}

}  // namespace tavocal
