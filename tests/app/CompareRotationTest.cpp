
#include <cmath>

#include "app/CrossSensorChecks.h"
#include "numerics/NumericsTesting.h"
#include "sensors/motion/Gyroscope.h"
#include "support/Angles.h"
#include "support/FakeRun.h"
#include "support/NamedSensor.h"
#include "support/Outcome.h"

namespace tavocal::test {

constexpr const char* kGravity = "Error in Gyroscope step 1 Gravity rotation test";
constexpr const char* kField = "Error in Gyroscope step 1 Magnetometer rotation test";

// Sensors of a test run whose gyroscope has seen a quarter turn about Z between two stages.
class CompareRotationTest : public ::testing::Test {
  protected:
    CompareRotationTest() {
        gyro->setManager(&run);
        run.stages = 2;
        gyro->testRotations.push_back(rotationMatrix({0.0, 0.0, kPi / 2.0}));
        for (int i = 0; i < 300; ++i) {
            mag->bufferedData.push_back({10.0 * i, field(i * 1.2)});
        }
    }

    // About a point that only the samples tell.
    static Vector field(double degrees) {
        return Vector{900.0, -400.0, 250.0} +
               Vector{std::cos(degrees * kDegree), std::sin(degrees * kDegree), 0.0} * 200.0;
    }

    void turnBy(double degrees) {
        const double angle = degrees * kDegree;
        acc->stageMeans = Matrix(2, 3, {0.0, 1.0, 0.0, std::sin(angle), std::cos(angle), 0.0});
        mag->stageMeans = Matrix(std::vector{field(90.0), field(90.0 - degrees)});
    }

    // The first line that is printed; nothing is if all agree.
    std::string failure(const std::shared_ptr<Sensor>& a, const std::shared_ptr<Sensor>& g,
                        const std::shared_ptr<Sensor>& m) {
        bool passed = false;
        const std::string printed =
            printedBy([&] { passed = CrossSensorChecks({}, {}, run).compareRotation(a, g, m); });
        EXPECT_EQ(passed, printed.empty());
        return printed.substr(0, printed.find('\n'));
    }

    FakeRun run{FlowType::FourSteps, RunCommand::TestCalibration};
    std::shared_ptr<InertialSensor> acc = makeNamedSensor("Accelerometer");
    std::shared_ptr<Gyroscope> gyro =
        std::dynamic_pointer_cast<Gyroscope>(makeNamedSensor("Gyroscope"));
    std::shared_ptr<InertialSensor> mag = makeNamedSensor("Magnetometer");
};

TEST_F(CompareRotationTest, NothingToCompareAgreesButWhatIsMissingFails) {
    EXPECT_EQ(failure(acc, nullptr, mag), "");
    EXPECT_EQ(failure(nullptr, gyro, nullptr), "");
    acc->stageMeans = Matrix(1, 3);
    EXPECT_EQ(failure(acc, gyro, nullptr), kGravity);
    acc->stageMeans = Matrix(2, 3);
    gyro->testRotations.clear();
    EXPECT_EQ(failure(acc, gyro, nullptr), kGravity);
    // Rounding carries the cosine of this agreement beyond 1.
    acc->stageMeans = Matrix(2, 3, {0.1, 1.0, 0.0, 0.1, 1.0, 0.0});
    gyro->testRotations = {identity(3)};
    EXPECT_EQ(failure(acc, gyro, nullptr), "");
    run.stages = 1;
    EXPECT_EQ(failure(acc, gyro, nullptr), "");
}

TEST_F(CompareRotationTest, TheGyroscopeTurnsTheLaterMeanBackOntoTheEarlier) {
    for (const double excess :
         {0.0, 4.99, -4.99, 5.01, -5.01, 14.99, -14.99, 15.01, -15.01, 180.0}) {
        turnBy(90.0 + excess);
        EXPECT_EQ(failure(acc, gyro, mag), std::abs(excess) > 5.0 ? kGravity : "") << excess;
        EXPECT_EQ(failure(nullptr, gyro, mag), std::abs(excess) > 15.0 ? kField : "") << excess;
    }
    EXPECT_TRUE(run.failures.empty());
}

// No run of today compares with the magnetometer.
TEST_F(CompareRotationTest, AComparisonIsReported) {
    turnBy(110.0);
    EXPECT_EQ(failure(nullptr, gyro, mag), kField);
    const std::string report = reportOf(*gyro);
    EXPECT_EQ(report.substr(report.find('(')),
              "(Performing_TestCompareRotation_Gyro_Mag(!step 1! !difference between gyro and mag! "
              "Angles[Rows=1 Cols=1](Values('20.000000;')) !The difference that is expected at a "
              "perfectly calibrated system! Expected[Rows=1 Cols=1](Values('0.000000;')) "
              "!rotation_agreement_degrees! threshold(Values('15.000000')) ! FAILED!))");
}

}  // namespace tavocal::test
