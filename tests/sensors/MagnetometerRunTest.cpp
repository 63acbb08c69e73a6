#include <gtest/gtest.h>

#include <cmath>

#include "base/Failures.h"
#include "formats/FormFactor.h"
#include "numerics/MatrixInverse.h"
#include "numerics/NumericsTesting.h"
#include "sensors/Magnetometer.h"
#include "support/MotionReplay.h"

// Calibrations of recordings whose truth is known.
namespace tavocal::test {
namespace {

constexpr double kDegree = 3.141592653589793 / 180.0;

Matrix matrixOf(const simulator::Mat3& m) {
    Matrix result(3, 3);
    for (std::size_t r = 0; r < 3; ++r) {
        result.setRow(static_cast<int>(r), {m.rows[r].x, m.rows[r].y, m.rows[r].z});
    }
    return result;
}

// A run does not show how strong the field is, so a map is known but for a factor.
Matrix unitVolume(const Matrix& m) {
    return m / std::cbrt(std::fabs(determinant(m)));
}

Matrix wholeMap(const InertialSensor& sensor) {
    return sensor.scaleMatrix * sensor.axisMapping;
}
struct FullRun {
    simulator::RecordingOptions options;
    simulator::Recording recording;
    MotionReplay run{FlowType::Full};
    std::shared_ptr<Magnetometer> sensor;

    explicit FullRun(const simulator::RecordingOptions& recordingOptions)
        : options(recordingOptions), recording(simulator::record(recordingOptions)) {
        for (const char* name : {"Accelerometer", "Gyroscope", "Magnetometer"}) {
            run.add(makeNamedSensor(name));
        }
        if (options.secondary) {
            run.add(makeNamedSensor("Magnetometer_2"));
        }
    }

    void calibrate(const std::shared_ptr<InertialSensor>& magnetometer) {
        sensor = std::dynamic_pointer_cast<Magnetometer>(magnetometer);
        formFactorFromText(options.formFactor, sensor->formFactor);
        hingeFromText(options.hinge, sensor->hinge);
        sensor->calibrate();
    }

    void expectTruth() const {
        const simulator::SensorTruth& truth = recording.truth.sensors.at(sensor->getDisplayName());
        const Vector offset{truth.offset.x, truth.offset.y, truth.offset.z};
        EXPECT_LT(maxDifference(sensor->offsetVector, offset), 5.0);
        const Matrix expected = unitVolume(matrixOf(truth.scale * truth.axisMapping));
        const Matrix found = unitVolume(wholeMap(*sensor));
        EXPECT_LT(maxDifference(found, expected), 0.02);
        // The turn between the two maps.
        const Matrix turn = found * inverse3(expected);
        for (int axis = 0; axis < 3; ++axis) {
            Vector unit(3);
            unit[axis] = 1.0;
            EXPECT_LT(angleBetween(column(turn, axis), unit), 1.0 * kDegree);
        }
        EXPECT_NEAR(std::atan2(sensor->sinDip, sensor->cosDip), options.dipDegrees * kDegree,
                    0.5 * kDegree);
        EXPECT_EQ(sensor->calibrationToWrite.size(), 40U);
    }
};

simulator::RecordingOptions fullOptions(std::uint64_t seed) {
    simulator::RecordingOptions options;
    options.seed = seed;
    return options;
}

TEST(MagnetometerRun, FindsHardAndSoftIronMountingAndDip) {
    for (std::uint64_t seed = 1; seed <= 4; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        simulator::RecordingOptions options = fullOptions(seed);
        options.leftHanded = seed % 3 == 0;
        options.dipDegrees = seed % 2 == 0 ? 60.0 : 35.0;
        FullRun full(options);
        const auto magnetometer = makeNamedSensor("Magnetometer");
        full.run.add(magnetometer);
        ASSERT_TRUE(full.run.play(full.recording));
        full.calibrate(magnetometer);
        full.expectTruth();
    }
}

TEST(MagnetometerRun, FindsTheAxesOfEachHalfOfTheDevice) {
    for (const std::string formFactor : {"2IN1", "MID"}) {
        for (const std::string hinge : {"BOTTOM", "TOP", "LEFT", "RIGHT"}) {
            SCOPED_TRACE(formFactor + " " + hinge);
            simulator::RecordingOptions options = fullOptions(7);
            options.secondary = true;
            options.formFactor = formFactor;
            options.hinge = hinge;
            FullRun full(options);
            const auto secondary = makeNamedSensor("Magnetometer_2");
            full.run.add(secondary);
            ASSERT_TRUE(full.run.play(full.recording));
            full.calibrate(secondary);
            full.expectTruth();
        }
    }
}

TEST(MagnetometerRun, AHalfTurnIsRefused) {
    simulator::RecordingOptions options = fullOptions(3);
    options.mistake = simulator::Mistake::HalfTurn;
    options.mistakeStep = 3;
    FullRun full(options);
    const auto magnetometer = makeNamedSensor("Magnetometer");
    full.run.add(magnetometer);
    ASSERT_TRUE(full.run.play(full.recording));
    EXPECT_THROW(full.calibrate(magnetometer), CalibrationException);
    EXPECT_TRUE(full.sensor->calibrationToWrite.empty());
}

// Without a gyroscope the magnetometer sees the turns itself.
TEST(MagnetometerRun, FindsTheStagesByItself) {
    simulator::RecordingOptions options = fullOptions(5);
    const simulator::Recording recording = simulator::record(options);
    MotionReplay run(FlowType::Full);
    run.add(makeNamedSensor("Accelerometer"));
    const auto magnetometer = makeNamedSensor("Magnetometer");
    run.add(magnetometer);
    ASSERT_TRUE(run.play(recording));
    magnetometer->calibrate();
    EXPECT_FALSE(magnetometer->calibrationToWrite.empty());
}

}  // namespace
}  // namespace tavocal::test
