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

// What a mistake or a fault does to the mean reading of one axis in one stage.
TEST(RecordingTest, MistakesAndFaultsShowInTheReadings) {
    const double north = 240.0;
    const double down = 480.0 * std::sin(kPi / 3.0);
    const struct {
        Mistake mistake;
        Fault fault;
        Flow flow;
        const char* sensor;
        std::size_t stage;
        std::size_t axis;
        double mean;
    } kRows[] = {
        {Mistake::WrongPosition, Fault::None, Flow::FourSteps, "Accelerometer", 2, 1, -1.0},
        {Mistake::WrongPosition, Fault::None, Flow::FourSteps, "Accelerometer", 3, 2, 1.0},
        {Mistake::WrongPosition, Fault::None, Flow::Minimal, "Accelerometer", 0, 2, -1.0},
        {Mistake::MovedDevice, Fault::None, Flow::FourSteps, "Accelerometer", 2, 1,
         std::cos(25.0 * kRadiansPerDegree)},
        {Mistake::SkippedTurn, Fault::None, Flow::MagAccuracy, "Magnetometer", 2, 0, north},
        {Mistake::HalfTurn, Fault::None, Flow::MagAccuracy, "Magnetometer", 2, 0,
         north * std::sqrt(0.5)},
        {Mistake::WrongTurn, Fault::None, Flow::MagAccuracy, "Magnetometer", 2, 1, north},
        {Mistake::WrongTurn, Fault::None, Flow::MagAccuracy, "Magnetometer", 3, 0, -north},
        {Mistake::None, Fault::EllipticMag, Flow::FourSteps, "Magnetometer", 1, 0, 1.3 * down},
        {Mistake::None, Fault::Heading30, Flow::FourSteps, "Magnetometer", 0, 0, north * 0.5},
        {Mistake::None, Fault::Heading30, Flow::FourSteps, "Magnetometer", 0, 2, -down},
    };
    for (const auto& row : kRows) {
        RecordingOptions options = shortRun(true);
        options.mistake = row.mistake;
        options.fault = row.fault;
        options.flow = row.flow;
        const double mean = spreadOf(record(options), row.sensor, row.stage).mean[row.axis];
        EXPECT_NEAR(mean, row.mean, 0.01 * std::abs(row.mean))
            << mistakeName(row.mistake) << faultName(row.fault) << row.stage;
    }
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
