#include "simulator/Recording.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tavocal::simulator {
namespace {

// Quick to make: 4 stages of a second.
RecordingOptions shortRun(bool perfect) {
    RecordingOptions options;
    options.flow = Flow::FourSteps;
    options.perfect = perfect;
    options.holdSeconds = 1.0;
    return options;
}

// Of the readings of one stage.
Vec3 meanOf(const Recording& recording, const std::string& name, std::size_t stage) {
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
    RecordingOptions options = shortRun(false);
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

// (scale * axisMapping) * (reading - offset) is what a perfect sensor reads.
TEST(RecordingTest, TruthUndoesTheErrorsAndNoiseIsAsTold) {
    for (const bool leftHanded : {false, true}) {
        RecordingOptions options = shortRun(false);
        options.secondary = true;
        options.leftHanded = leftHanded;
        const Recording recording = record(options);
        options.perfect = true;
        const Recording perfect = record(options);
        for (const auto& [name, truth] : recording.truth.sensors) {
            EXPECT_EQ(determinant(truth.axisMapping), leftHanded ? -1.0 : 1.0);
            for (std::size_t stage = 0; stage < 4; ++stage) {
                const Vec3 raw = meanOf(recording, name, stage);
                const Vec3 undone = (truth.scale * truth.axisMapping) * (raw - truth.offset);
                // The noise is the same in both, but comes through another matrix.
                EXPECT_LT(norm(undone - meanOf(perfect, name, stage)), 2.0 * truth.noise) << name;
            }
        }
    }
}

TEST(RecordingTest, MistakesAndFaultsShowInTheReadings) {
    RecordingOptions options = shortRun(true);
    const auto mistaken = [&](Mistake mistake, std::size_t stage) {
        options.mistake = mistake;
        const bool still = options.flow == Flow::MagAccuracy;
        return meanOf(record(options), still ? "Magnetometer" : "Accelerometer", stage);
    };
    EXPECT_NEAR(mistaken(Mistake::WrongPosition, 2).y, -1.0, 0.01);
    EXPECT_NEAR(mistaken(Mistake::WrongPosition, 3).z, 1.0, 0.01);
    EXPECT_NEAR(mistaken(Mistake::MovedDevice, 2).y, std::cos(25.0 * kRadiansPerDegree), 0.01);
    options.flow = Flow::Minimal;
    EXPECT_NEAR(mistaken(Mistake::WrongPosition, 0).z, -1.0, 0.01);
    options.flow = Flow::MagAccuracy;
    EXPECT_NEAR(mistaken(Mistake::SkippedTurn, 2).x, 240.0, 2.0);
    EXPECT_NEAR(mistaken(Mistake::HalfTurn, 2).x, 240.0 * std::sqrt(0.5), 2.0);
    EXPECT_NEAR(mistaken(Mistake::WrongTurn, 2).y, 240.0, 2.0);

    options = shortRun(true);
    const double down = options.fieldMg * std::sqrt(0.75);
    options.fault = Fault::EllipticMag;
    EXPECT_NEAR(meanOf(record(options), "Magnetometer", 1).x, 1.3 * down, 2.0);
    options.fault = Fault::Heading30;
    EXPECT_LT(norm(meanOf(record(options), "Magnetometer", 0) - Vec3{120, down / 2, -down}), 3.0);
    options.fault = Fault::WrongMounting;
    EXPECT_NEAR(std::abs(meanOf(record(options), "Accelerometer", 1).y), 1.0, 0.01);
}

TEST(RecordingTest, MagnetsSilenceAndGivingUpLastAsTold) {
    RecordingOptions options = shortRun(true);
    const Recording good = record(options);
    options.mistake = Mistake::Magnet;
    const Recording magnetic = record(options);
    for (std::size_t stage = 0; stage < 4; ++stage) {
        const double change =
            norm(meanOf(magnetic, "Magnetometer", stage) - meanOf(good, "Magnetometer", stage));
        EXPECT_TRUE(stage == 2 ? change > 100.0 : change < 0.01) << change;
    }
    options.mistake = Mistake::SilentSensor;
    const Recording silent = record(options);
    EXPECT_NEAR(silent.rows.at("Gyroscope").back().time, good.truth.stages[2].begin + 500.0, 15.0);
    options.mistake = Mistake::CutShort;
    EXPECT_EQ(record(options).truth.stages.size(), 3u);
}

}  // namespace
}  // namespace tavocal::simulator
