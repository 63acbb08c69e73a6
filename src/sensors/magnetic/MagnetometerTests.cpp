#include "sensors/magnetic/MagnetometerTests.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "log/Logger.h"
#include "numerics/Rotations.h"
#include "numerics/Statistics.h"
#include "numerics/TextForms.h"
#include "sensors/inertial/InertialSensor.h"
#include "sensors/magnetic/Ellipsoid.h"
#include "sensors/model/Assertions.h"
#include "sensors/model/RunContext.h"
#include "sensors/model/SecondaryMounting.h"
#include "sensors/model/SensorTest.h"
#include "vocabulary/TestingConfig.h"

namespace tavocal {

namespace {

constexpr int kHeadings = 4;

constexpr TestTexts kMagStd = {"noise",
                               std::nullopt,
                               "StandardDeviation",
                               "The measured noise",
                               "ExpectedDeviation",
                               "noise that is expected at a perfectly calibrated system"};
constexpr TestTexts kStaticValues = {
    "noise of the quietest axis",
    std::nullopt,
    "StaticValue",
    "The measured static value",
    "ExpectedStaticValue",
    "static value that is expected at a perfectly calibrated system"};
constexpr TestTexts kMagValues = {
    "turns between the stages", Unit::degree,
    "MagnetometerValues",       "The measured Magnetometer values",
    "ExpectedValues",           "Mag values that is expected at a perfectly calibrated system"};
constexpr TestTexts kDirection = {
    "headings",
    Unit::degree,
    "CompassDirection",
    "The measured compass direction",
    "ExpectedCompassDirection",
    "compass direction that is expected at a perfectly calibrated system"};
constexpr TestTexts kMagScale = {"ratio of the circle's radii",
                                 Unit::unknown,
                                 "MagScale",
                                 "The measured Mag scale",
                                 "ExpectedMagScale",
                                 "Mag scale that is expected at a perfectly calibrated system"};

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
    SensorTest test(sensor, "Performing_TestMagSTD");
    for (int i = 0; i < sensor.run().stageCount(); ++i) {
        test.beginStep("step", i);
        test.judge(assertVector(row(sensor.stageStds, i), Vector(3),
                                "motionless " + sensor.getDisplayName() + " step " +
                                    std::to_string(i) + " Std value test",
                                "", testingConfig().mag_Threshold_Noise),
                   kMagStd);
    }
    return test.finish();
}

bool TestStaticValues(InertialSensor& sensor) {
    SensorTest test(sensor, "Performing_TestStaticValues");
    test.judge(
        assertDouble(quietestAxis(sensor.bufferedData), 0.0, "Magnetometer static values test", "",
                     testingConfig().mag_Static_Threshold),
        kStaticValues);
    return test.finish();
}

bool TestMagValues(InertialSensor& sensor, const Vector& center) {
    SensorTest test(sensor, "Performing_TestMagValues");
    const Vector h = calcHeadings(sensor, center);
    // The first entry is the turn from the last stage to the first.
    Vector turns = h - Vector{h[3], h[0], h[1], h[2]};
    std::transform(turns.begin(), turns.end(), turns.begin(), wrapped);
    test.judge(assertAngles(turns, {90.0, 90.0, 90.0, 90.0}, "Magnetometer values test", "",
                            testingConfig().mag_Threshold_angles),
               kMagValues);
    return test.finish();
}

bool TestDirection(InertialSensor& sensor, const Vector& center) {
    SensorTest test(sensor, "Performing_TestDirection");
    const Vector h = calcHeadings(sensor, center);
    TAVOCAL_LOG(Debug, "Magnetometer::TestDirection", "mag direction is: " + compactRow(h));
    test.judge(assertAngles(h, {0.0, 90.0, 180.0, 270.0}, "Compass direction test", "",
                            testingConfig().mag_Threshold_angles),
               kDirection);
    return test.finish();
}

bool TestMagScale(InertialSensor& sensor, const Ellipsoid& fit) {
    SensorTest test(sensor, "Performing_TestMagScale");
    test.judge(assertDouble(fit.axisGain[1] / fit.axisGain[0], 1.0, "Magnet scale test", "",
                            testingConfig().mag_scale_Thershold),
               kMagScale);
    return test.finish();
}

}  // namespace tavocal
