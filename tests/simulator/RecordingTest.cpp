#include "simulator/Recording.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tavocal::simulator {

// Of the readings of one stage.
static Vec3 meanOf(const Recording& recording, const std::string& name, std::size_t stage) {
    const StillStage& still = recording.truth.stages.at(stage);
    Vec3 sum;
    double count = 0.0;
    for (const Row& row : recording.rows.at(name)) {
        if (row.time >= still.begin && row.time <= still.end) {
            sum += {row.values[0], row.values[1], row.values[2]};
            count += 1.0;
        }
    }
    return sum * (1.0 / count);
}

TEST(RecordingTest, SeedDecidesAndWhatASensorReadsDependsOnNoOther) {
    RecordingOptions options;
    options.flow = Flow::Minimal;
    const Recording once = record(options);
    options.noiseG = 0.1;
    const Recording noisy = record(options);
    options.seed = 2;
    const Recording other = record(options);
    for (const std::string name : {"Accelerometer", "Gyroscope", "Magnetometer"}) {
        EXPECT_EQ(once.dumpText(name) == noisy.dumpText(name), name != "Accelerometer") << name;
        EXPECT_NE(noisy.dumpText(name), other.dumpText(name)) << name;
    }
}

// Those that no transcript of a run shows.
TEST(RecordingTest, MistakesAndFaultsShowInTheReadings) {
    RecordingOptions options;
    options.flow = Flow::FourSteps;
    options.perfect = true;
    options.fault = Fault::EllipticMag;
    EXPECT_NEAR(meanOf(record(options), "Magnetometer", 1).x, 1.3 * 480.0 * std::sqrt(0.75), 2.0);
    options.mistake = Mistake::MovedDevice;
    const double moved = std::cos(25.0 * kRadiansPerDegree);
    EXPECT_NEAR(meanOf(record(options), "Accelerometer", 2).y, moved, 0.01);
    options.mistake = Mistake::SilentSensor;
    const Recording silent = record(options);
    EXPECT_NEAR(silent.rows.at("Gyroscope").back().time, silent.truth.stages[2].begin + 500, 15.0);
    options.flow = Flow::MagAccuracy;
    options.mistake = Mistake::HalfTurn;
    EXPECT_NEAR(meanOf(record(options), "Magnetometer", 2).x, 1.3 * 240.0 * std::sqrt(0.5), 2.0);
}

}  // namespace tavocal::simulator
