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
    options.tiltSeconds = 0.5;
    return options;
}

struct Spread {
    Vec3 mean;
    Vec3 deviation;
};

// Of the samples of one stage.
Spread spreadOf(const Recording& recording, const std::string& name, std::size_t stage) {
    const StillStage& still = recording.truth.stages.at(stage);
    Spread spread;
    Vec3 squares;
    double count = 0.0;
    for (const Row& row : recording.rows.at(name)) {
        if (row.time >= still.begin && row.time <= still.end) {
            const Vec3 value{row.values[0], row.values[1], row.values[2]};
            count += 1.0;
            const Vec3 step = value - spread.mean;
            spread.mean += step * (1.0 / count);
            for (std::size_t axis = 0; axis < 3; ++axis) {
                squares[axis] += step[axis] * (value[axis] - spread.mean[axis]);
            }
        }
    }
    for (std::size_t axis = 0; axis < 3; ++axis) {
        spread.deviation[axis] = std::sqrt(squares[axis] / count);
    }
    return spread;
}

TEST(RecordingTest, SeedDecidesAndWhatASensorReadsDependsOnNoOther) {
    RecordingOptions options = shortRun(false);
    const Recording once = record(options);
    const Recording again = record(options);
    options.noiseG = 0.1;
    const Recording noisy = record(options);
    options.seed = 2;
    const Recording other = record(options);
    for (const std::string name : {"Accelerometer", "Gyroscope", "Magnetometer"}) {
        EXPECT_EQ(once.dumpText(name), again.dumpText(name));
        EXPECT_EQ(once.dumpText(name) == noisy.dumpText(name), name != "Accelerometer") << name;
        EXPECT_NE(once.dumpText(name), other.dumpText(name));
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
                const Vec3 raw = spreadOf(recording, name, stage).mean;
                const Spread ideal = spreadOf(perfect, name, stage);
                const Vec3 undone = (truth.scale * truth.axisMapping) * (raw - truth.offset);
                // The noise is the same in both, but comes through another matrix.
                EXPECT_LT(norm(undone - ideal.mean), 2.0 * truth.noise) << name;
                EXPECT_NEAR(ideal.deviation.x / truth.noise, 1.0, 0.4) << name;
            }
        }
    }
}

// The mean reading of one axis in one stage.
double meanOf(Mistake mistake, Fault fault, Flow flow, const char* sensor, std::size_t stage,
              std::size_t axis) {
    RecordingOptions options = shortRun(true);
    options.mistake = mistake;
    options.fault = fault;
    options.flow = flow;
    return spreadOf(record(options), sensor, stage).mean[axis];
}

TEST(RecordingTest, MistakesShowInTheReadings) {
    const auto mean = [](Mistake mistake, Flow flow, std::size_t stage, std::size_t axis) {
        const char* sensor = flow == Flow::MagAccuracy ? "Magnetometer" : "Accelerometer";
        return meanOf(mistake, Fault::None, flow, sensor, stage, axis);
    };
    EXPECT_NEAR(mean(Mistake::WrongPosition, Flow::FourSteps, 2, 1), -1.0, 0.01);
    EXPECT_NEAR(mean(Mistake::WrongPosition, Flow::FourSteps, 3, 2), 1.0, 0.01);
    EXPECT_NEAR(mean(Mistake::WrongPosition, Flow::Minimal, 0, 2), -1.0, 0.01);
    EXPECT_NEAR(mean(Mistake::MovedDevice, Flow::FourSteps, 2, 1), std::cos(kPi * 25 / 180), 0.01);
    EXPECT_NEAR(mean(Mistake::SkippedTurn, Flow::MagAccuracy, 2, 0), 240.0, 2.0);
    EXPECT_NEAR(mean(Mistake::HalfTurn, Flow::MagAccuracy, 2, 0), 240.0 * std::sqrt(0.5), 2.0);
    EXPECT_NEAR(mean(Mistake::WrongTurn, Flow::MagAccuracy, 2, 1), 240.0, 2.0);
    EXPECT_NEAR(mean(Mistake::WrongTurn, Flow::MagAccuracy, 3, 0), -240.0, 2.0);
}

TEST(RecordingTest, FaultsShowInTheReadings) {
    const double down = 480.0 * std::sin(kPi / 3.0);
    const auto mean = [](Fault fault, const char* sensor, std::size_t stage, std::size_t axis) {
        return meanOf(Mistake::None, fault, Flow::FourSteps, sensor, stage, axis);
    };
    EXPECT_NEAR(mean(Fault::EllipticMag, "Magnetometer", 1, 0), 1.3 * down, 2.0);
    EXPECT_NEAR(mean(Fault::Heading30, "Magnetometer", 0, 0), 120.0, 2.0);
    EXPECT_NEAR(mean(Fault::Heading30, "Magnetometer", 0, 2), -down, 2.0);
    EXPECT_NEAR(std::abs(mean(Fault::WrongMounting, "Accelerometer", 1, 1)), 1.0, 0.01);
}

TEST(RecordingTest, MagnetsSilenceAndGivingUpLastAsTold) {
    RecordingOptions options = shortRun(true);
    const Recording good = record(options);
    options.mistake = Mistake::Magnet;
    const Recording magnetic = record(options);
    for (std::size_t stage = 0; stage < 4; ++stage) {
        const Vec3 change = spreadOf(magnetic, "Magnetometer", stage).mean -
                            spreadOf(good, "Magnetometer", stage).mean;
        EXPECT_EQ(norm(change) > 100.0, stage == 2);
        EXPECT_EQ(norm(change) < 0.01, stage != 2);
    }
    options.mistake = Mistake::SilentSensor;
    const Recording silent = record(options);
    EXPECT_NEAR(silent.rows.at("Gyroscope").back().time, good.truth.stages[2].begin + 500.0, 15.0);
    EXPECT_EQ(silent.rows.at("Accelerometer").size(), good.rows.at("Accelerometer").size());
    options.mistake = Mistake::CutShort;
    EXPECT_EQ(record(options).truth.stages.size(), 3u);
}

}  // namespace
}  // namespace tavocal::simulator
