#include "simulator/recording/Recording.h"

#include <gtest/gtest.h>

namespace tavocal::simulator {

// In the middle of a stage.
static Vec3 readingOf(const Recording& recording, const std::string& name, std::size_t stage) {
    const StillStage& still = recording.truth.stages.at(stage);
    auto row = recording.rows.at(name).begin();
    while (2.0 * row->time < still.begin + still.end) {
        ++row;
    }
    return {row->values[0], row->values[1], row->values[2]};
}

// Those that no transcript of a run shows.
TEST(RecordingTest, MistakesAndFaultsShowInTheReadings) {
    RecordingOptions options;
    options.flow = Flow::FourSteps;
    options.perfect = true;
    options.fault = Fault::EllipticMag;
    // 30 % more than the 415.7 mG that the field points down.
    EXPECT_NEAR(readingOf(record(options), "Magnetometer", 1).x, 540.4, 2.0);
    options.mistake = Mistake::MovedDevice;
    // The cosine of 25 degrees.
    EXPECT_NEAR(readingOf(record(options), "Accelerometer", 2).y, 0.9063, 0.01);
    options.mistake = Mistake::SilentSensor;
    const Recording silent = record(options);
    EXPECT_NEAR(silent.rows.at("Gyroscope").back().time, silent.truth.stages[2].begin + 500, 15.0);
    options.flow = Flow::MagAccuracy;
    options.mistake = Mistake::HalfTurn;
    // 30 % more than the level 240 mG at 45 degrees.
    EXPECT_NEAR(readingOf(record(options), "Magnetometer", 2).x, 220.6, 2.0);
}

}  // namespace tavocal::simulator
