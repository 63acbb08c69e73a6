#include <gtest/gtest.h>

#include <cmath>

#include "app/CrossSensorChecks.h"
#include "base/Text.h"
#include "formats/TestingConfig.h"
#include "numerics/NumericsTesting.h"
#include "platform/Console.h"
#include "sensors/Gyroscope.h"
#include "support/MotionReplay.h"

namespace tavocal::test {

namespace {

constexpr double kPi = 3.141592653589793;
constexpr SelectedClasses kAll{true, true, true};

// Sensors of a test run whose gyroscope has seen a quarter turn about Z between its stages.
class CompareRotationTest : public ::testing::Test {
  protected:
    CompareRotationTest() : run(FlowType::FourSteps, RunCommand::TestCalibration) {
        run.process.stageCount = 2;
        gyro->testRotations = {rotationMatrix({0.0, 0.0, kPi / 2.0})};
        for (const auto& sensor : {acc, mag}) {
            sensor->stageMeans = Matrix(2, 3);
        }
        acc->stageMeans.setRow(0, {0.0, 1.0, 0.0});
        acc->stageMeans.setRow(1, {1.0, 0.0, 0.0});
    }

    ~CompareRotationTest() override { testingConfig() = TestingConfig(); }

    bool compare(const std::shared_ptr<Sensor>& a, const std::shared_ptr<Sensor>& g,
                 const std::shared_ptr<Sensor>& m) {
        ::testing::internal::CaptureStdout();
        const bool passed = CrossSensorChecks({}, kAll, run).compareRotation(a, g, m);
        platform::Console::instance().flush();
        printed = ::testing::internal::GetCapturedStdout();
        return passed;
    }

    MotionReplay run;
    std::shared_ptr<InertialSensor> acc = makeNamedSensor("Accelerometer");
    std::shared_ptr<Gyroscope> gyro =
        std::dynamic_pointer_cast<Gyroscope>(makeNamedSensor("Gyroscope"));
    std::shared_ptr<InertialSensor> mag = makeNamedSensor("Magnetometer");
    std::string printed;
};

TEST_F(CompareRotationTest, NothingToCompareAgreesButWhatIsMissingFails) {
    EXPECT_TRUE(compare(acc, nullptr, mag));
    EXPECT_TRUE(compare(nullptr, gyro, nullptr));
    acc->stageMeans = Matrix(1, 3);
    EXPECT_FALSE(compare(acc, gyro, nullptr));
    acc->stageMeans = Matrix(2, 3);
    gyro->testRotations.clear();
    EXPECT_FALSE(compare(acc, gyro, nullptr));
    run.process.stageCount = 1;
    EXPECT_TRUE(compare(acc, gyro, nullptr));
    EXPECT_TRUE(contains(reportOf(*gyro), "Performing_TestCompareRotation_Gyro_Accel)"));
}

TEST_F(CompareRotationTest, TheGyroscopeTurnsTheLaterMeanBackOntoTheEarlier) {
    EXPECT_TRUE(compare(acc, gyro, mag));
    EXPECT_EQ(printed, "");
    EXPECT_TRUE(contains(
        reportOf(*gyro),
        "Performing_TestCompareRotation_Gyro_Accel(!step 1! !difference between gyro and accel! "
        "Angles[Rows=1 Cols=1](Values('0.000000;')) !The difference that is expected at a "
        "perfectly calibrated system! Expected[Rows=1 Cols=1](Values('0.000000;')) "
        "!rotation_agreement_degrees! threshold(Values('5.000000')) !: PASSED!)"));
}

TEST_F(CompareRotationTest, AnAngleOfTheThresholdPasses) {
    acc->stageMeans.setRow(0, {1.0, 0.0, 0.0});
    gyro->testRotations = {rotationMatrix({0.0, 0.0, 0.1})};
    const double angle =
        angleBetween(gyro->testRotations[0] * Vector{1.0, 0.0, 0.0}, {1.0, 0.0, 0.0}) *
        57.29577951308232;
    testingConfig().rotation_agreement_degrees_acc = angle;
    EXPECT_TRUE(compare(acc, gyro, mag));
    testingConfig().rotation_agreement_degrees_acc = std::nextafter(angle, 0.0);
    EXPECT_FALSE(compare(acc, gyro, mag));
    EXPECT_TRUE(contains(printed, "Error in Gyroscope step 1 Gravity rotation test\n"));
    EXPECT_TRUE(run.failures.empty());
    EXPECT_TRUE(contains(reportOf(*gyro), "! FAILED!)"));
}

// For some of these rounding carries the cosine beyond 1.
TEST_F(CompareRotationTest, AgreementToTheLastDigitPasses) {
    constexpr std::uint64_t kSeed = 7;
    RandomNumbers random(kSeed);
    gyro->testRotations = {identity(3)};
    for (int i = 0; i < 100; ++i) {
        const Vector mean = random.unitVector();
        acc->stageMeans.setRow(0, mean);
        acc->stageMeans.setRow(1, mean);
        EXPECT_TRUE(compare(acc, gyro, nullptr)) << "seed " << kSeed << " number " << i;
    }
}

// The magnetometer's means lie on a circle about a point that only its samples tell.
TEST_F(CompareRotationTest, TheFieldIsTakenFromTheMiddleOfItsCircle) {
    const Vector center{900.0, -400.0, 250.0};
    for (int i = 0; i < 300; ++i) {
        const double angle = 2.0 * kPi * i / 300.0;
        const Vector field{200.0 * std::cos(angle), 200.0 * std::sin(angle), 0.0};
        mag->bufferedData.push_back({10.0 * i, center + field});
    }
    mag->stageMeans.setRow(0, center + Vector{0.0, 200.0, 0.0});
    mag->stageMeans.setRow(1, center + Vector{200.0, 0.0, 0.0});
    EXPECT_TRUE(compare(nullptr, gyro, mag));

    const double off = 16.0 * kPi / 180.0;
    mag->stageMeans.setRow(1, center + Vector{200.0 * std::cos(off), 200.0 * std::sin(off), 0.0});
    EXPECT_FALSE(compare(nullptr, gyro, mag));
    EXPECT_TRUE(contains(printed, "Error in Gyroscope step 1 Magnetometer rotation test\n"));
    const std::string report = reportOf(*gyro);
    EXPECT_TRUE(contains(report,
                         "Performing_TestCompareRotation_Gyro_Mag(!step 1! "
                         "!difference between gyro and mag! Angles"));
    EXPECT_TRUE(contains(report, "threshold(Values('15.000000'))"));
}

TEST(CompareRotationRecordingTest, AGyroscopeThatReadsTooMuchDisagrees) {
    for (const bool faulty : {false, true}) {
        simulator::RecordingOptions options;
        options.flow = simulator::Flow::FourSteps;
        options.sensors = "AG";
        options.perfect = true;
        options.fault = faulty ? simulator::Fault::GyroScale10 : simulator::Fault::None;
        MotionReplay run(FlowType::FourSteps, RunCommand::TestCalibration);
        const auto acc = makeNamedSensor("Accelerometer");
        const auto gyro = makeNamedSensor("Gyroscope");
        run.add(acc);
        run.add(gyro);
        ASSERT_TRUE(run.play(simulator::record(options)));
        EXPECT_TRUE(acc->testCalibration());
        EXPECT_TRUE(gyro->testCalibration());
        ::testing::internal::CaptureStdout();
        EXPECT_EQ(CrossSensorChecks({}, kAll, run).compareRotation(acc, gyro, nullptr), !faulty);
        platform::Console::instance().flush();
        ::testing::internal::GetCapturedStdout();
    }
}

}  // namespace

}  // namespace tavocal::test
