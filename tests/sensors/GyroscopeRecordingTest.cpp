#include <gtest/gtest.h>

#include "sensors/Gyroscope.h"
#include "support/MotionReplay.h"

namespace tavocal::test {

namespace {

TEST(GyroscopeRecordingTest, CalibratesARecordedRun) {
    simulator::RecordingOptions options;
    options.sensors = "AG";
    options.noiseDps = 0.05;
    const simulator::Recording recording = simulator::record(options);
    MotionReplay run(FlowType::Full);
    const auto sensor = std::dynamic_pointer_cast<Gyroscope>(makeNamedSensor("Gyroscope"));
    run.add(makeNamedSensor("Accelerometer"));
    run.add(sensor);
    ASSERT_TRUE(run.play(recording));
    sensor->calibrate();

    const simulator::SensorTruth& truth = recording.truth.sensors.at("Gyroscope");
    const simulator::Mat3 expected = truth.scale * truth.axisMapping;
    const Matrix map = sensor->scaleMatrix * sensor->axisMapping;
    for (int r = 0; r < 3; ++r) {
        const auto at = static_cast<std::size_t>(r);
        EXPECT_NEAR(sensor->offsetVector[r], truth.offset[at], 0.05);
        for (int c = 0; c < 3; ++c) {
            EXPECT_NEAR(map[r][c], expected.rows[at][static_cast<std::size_t>(c)], 0.005);
        }
    }
}

TEST(GyroscopeRecordingTest, ATurnThatIsNotMadeIsNotDetected) {
    simulator::RecordingOptions options;
    options.sensors = "AG";
    options.mistake = simulator::Mistake::SkippedTurn;
    MotionReplay run(FlowType::Full);
    run.add(makeNamedSensor("Accelerometer"));
    run.add(makeNamedSensor("Gyroscope"));
    EXPECT_FALSE(run.play(simulator::record(options)));
}

}  // namespace

}  // namespace tavocal::test
