#include "sensors/motion/RotationTracking.h"

#include "support/InertialBench.h"

namespace tavocal::test {

// A device that turns about its Z axis at a steady rate, at 100 Hz, and a reference that sees a
// vector which stands still in the world. Both sensors are perfect.
struct RotationTrackingTest : ::testing::Test {
    RotationTrackingTest() {
        reference->scaleMatrix = gyroscope->scaleMatrix = identity(3);
        reference->axisMapping = gyroscope->axisMapping = identity(3);
        reference->stageMeans.setRow(1, {1.0, 0.0, 0.0});
    }

    void sample(double from, double to) {
        for (double t = from; t <= to; t += 10.0) {
            const double angle = rate * kDegree * (t - 1000.0) / 1000.0;
            reference->bufferedData.push_back({t, {std::cos(angle), -std::sin(angle), 0.0}});
            gyroscope->bufferedData.push_back({t, {0.0, 0.0, rate}});
        }
    }

    double error(const Matrix& alignment = identity(3), double end = 3000.0) const {
        return rotationTrackingError(*reference, *gyroscope, 1, alignment, 1000.0, end);
    }

    double rate = 45.0;  // degrees per second
    std::shared_ptr<InertialSensor> reference = makeNamedSensor("Accelerometer");
    std::shared_ptr<InertialSensor> gyroscope = makeNamedSensor("Gyroscope");
};

// The distance is that of the point before, so a perfect pair shows the turn of one step: a 200th
// of the motion.
TEST_F(RotationTrackingTest, ComparesTheTurnsOfBoth) {
    sample(0.0, 6000.0);
    const double step = rate * kDegree * 0.01;
    EXPECT_NEAR(error(), step, step * 0.02);
    EXPECT_NEAR(error(identity(3), 5000.0), 2.0 * step, step * 0.02);
    EXPECT_GT(error(diagonal({1.0, 1.0, -1.0})), 1.0);
    gyroscope->scaleMatrix = diagonal({1.0, 1.0, -1.0});
    EXPECT_NEAR(error(gyroscope->scaleMatrix), step, step * 0.02);
    gyroscope->scaleMatrix = diagonal({1.0, 1.0, 1.1});  // 9 degrees too far, on average half of it
    EXPECT_NEAR(error(), 4.5 * kDegree, 0.01);
}

TEST_F(RotationTrackingTest, NeedsSamplesOfTheReference) {
    sample(0.0, 1000.0);
    EXPECT_EQ(failureOf([this] { error(); }), "buffered data of sensorAccelerometer is empty");
}

}  // namespace tavocal::test
