#include "sensors/RotationTracking.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/Failures.h"
#include "numerics/NumericsTesting.h"
#include "support/MotionReplay.h"

namespace tavocal::test {

namespace {

constexpr double kBegin = 1000.0;
constexpr double kEnd = 3000.0;

// A device that turns about its Z axis at a steady rate, at 100 Hz, and a reference that sees a
// vector which stands still in the world. Both sensors are perfect.
class RotationTrackingTest : public ::testing::Test {
  protected:
    RotationTrackingTest() {
        for (const auto& sensor : {reference, gyroscope}) {
            sensor->scaleMatrix = identity(3);
            sensor->axisMapping = identity(3);
        }
        reference->stageMeans.setRow(1, seenAt(kBegin));
    }

    Vector seenAt(double time) const {
        const double angle = rate * std::acos(-1.0) / 180.0 * (time - kBegin) / 1000.0;
        return {std::cos(angle), -std::sin(angle), 0.0};
    }

    void sample(double from, double to) {
        for (double t = from; t <= to; t += 10.0) {
            reference->bufferedData.push_back({t, seenAt(t)});
            gyroscope->bufferedData.push_back({t, Vector{0.0, 0.0, rate}});
        }
    }

    double error(const Matrix& alignment = identity(3)) const {
        return rotationTrackingError(*reference, *gyroscope, 1, alignment, kBegin, kEnd);
    }

    double rate = 45.0;  // degrees per second
    std::shared_ptr<InertialSensor> reference = makeNamedSensor("Accelerometer");
    std::shared_ptr<InertialSensor> gyroscope = makeNamedSensor("Gyroscope");
};

// The distance is that of the point before, so a perfect pair shows the turn of one step: a 200th
// of the motion.
TEST_F(RotationTrackingTest, AgreesButForTheTurnOfOneStep) {
    sample(0.0, 6000.0);
    const double step = rate * std::acos(-1.0) / 180.0 * 0.01;
    EXPECT_NEAR(error(), step, step * 0.02);
    EXPECT_NEAR(rotationTrackingError(*reference, *gyroscope, 1, identity(3), kBegin, 5000.0),
                2.0 * step, step * 0.02);
}

TEST_F(RotationTrackingTest, AGyroscopeThatReadsTheTurnOtherwiseDisagrees) {
    sample(0.0, 4000.0);
    EXPECT_GT(error(diagonal({1.0, 1.0, -1.0})), 1.0);
    gyroscope->scaleMatrix = diagonal({1.0, 1.0, -1.0});
    EXPECT_LT(error(diagonal({1.0, 1.0, -1.0})), 0.01);
    gyroscope->scaleMatrix = diagonal({1.0, 1.0, 1.1});
    // 9 degrees too far at the end, half of that on average
    EXPECT_NEAR(error(), 4.5 * std::acos(-1.0) / 180.0, 0.01);
}

TEST_F(RotationTrackingTest, MeasuresInTheReferencesUnitFromItsMean) {
    rate = 0.0;
    sample(0.0, 4000.0);
    EXPECT_EQ(error(), 0.0);
    reference->stageMeans.setRow(1, {3.0, 0.0, 0.0});
    EXPECT_EQ(error(), 2.0);
    reference->offsetVector = {0.5, 0.0, 0.0};
    reference->scaleMatrix = diagonal({10.0, 10.0, 10.0});
    EXPECT_EQ(error(), 20.0);
}

TEST_F(RotationTrackingTest, StaysWithinTheSamplesOfBoth) {
    EXPECT_THROW(error(), CalibrationException);
    sample(0.0, kBegin);
    try {
        error();
        ADD_FAILURE() << "nothing was sampled in the motion";
    } catch (const CalibrationException& exception) {
        EXPECT_STREQ(exception.what(), "buffered data of sensorAccelerometer is empty");
    }

    sample(kBegin + 10.0, 2000.0);  // the reference ends within the motion
    EXPECT_NEAR(error(), 0.0079, 0.0002);

    gyroscope->bufferedData.clear();
    EXPECT_EQ(error(), 0.0);
}

TEST_F(RotationTrackingTest, AFirstSampleOfTheGyroscopeTellsNoTurn) {
    rate = 0.0;
    sample(kBegin + 10.0, 4000.0);
    gyroscope->bufferedData.front().values = {0.0, 9000.0, 0.0};
    EXPECT_EQ(error(), 0.0);
}

}  // namespace

}  // namespace tavocal::test
