#include "simulator/Recording.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

namespace tavocal::simulator {
namespace {

// Quick to make: 4 stages of half a second.
RecordingOptions shortRun(std::uint64_t seed = 1) {
    RecordingOptions options;
    options.flow = Flow::FourSteps;
    options.seed = seed;
    options.holdSeconds = 0.5;
    options.tiltSeconds = 0.5;
    return options;
}

std::map<std::string, std::string> dumps(const RecordingOptions& options) {
    const Recording recording = record(options);
    std::map<std::string, std::string> result;
    for (const auto& [name, rows] : recording.rows) {
        result[name] = recording.dumpText(name);
    }
    return result;
}

struct Spread {
    Vec3 mean;
    Vec3 deviation;
};

// Of the samples of one stage.
Spread spreadOf(const std::vector<Row>& rows, const StillStage& stage) {
    Vec3 sum;
    Vec3 squares;
    double count = 0.0;
    for (const Row& row : rows) {
        if (row.time >= stage.begin && row.time <= stage.end) {
            for (std::size_t axis = 0; axis < 3; ++axis) {
                sum[axis] += row.values[axis];
                squares[axis] += row.values[axis] * row.values[axis];
            }
            count += 1.0;
        }
    }
    Spread spread;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double mean = sum[axis] / count;
        spread.mean[axis] = mean;
        spread.deviation[axis] = std::sqrt(squares[axis] / count - mean * mean);
    }
    return spread;
}

TEST(RecordingTest, SameSeedGivesTheSameBytes) {
    EXPECT_EQ(dumps(shortRun(5)), dumps(shortRun(5)));
    const auto one = dumps(shortRun(5));
    const auto other = dumps(shortRun(6));
    for (const auto& [name, text] : one) {
        EXPECT_NE(text, other.at(name)) << name;
    }
}

TEST(RecordingTest, WhatASensorReadsDependsOnNoOther) {
    RecordingOptions options = shortRun();
    const auto all = dumps(options);
    options.noiseG = 0.1;
    options.secondary = true;
    const auto more = dumps(options);
    EXPECT_EQ(more.at("Gyroscope"), all.at("Gyroscope"));
    EXPECT_EQ(more.at("Magnetometer"), all.at("Magnetometer"));
    EXPECT_NE(more.at("Accelerometer"), all.at("Accelerometer"));
    EXPECT_EQ(more.size(), 6u);
}

TEST(RecordingTest, DumpHasItsHeadAndOneLinePerSample) {
    RecordingOptions options = shortRun();
    options.secondary = true;
    options.hinge = "LEFT";
    const Recording recording = record(options);
    const std::string text = recording.dumpText("Gyroscope_2");
    const std::string head =
        "LUID=0076000100000102\nFORMFACTOR=2IN1\nHINGE=LEFT\n"
        "time[ms],Gyroscope_2_X[deg__sec],Gyroscope_2_Y[deg__sec],Gyroscope_2_Z[deg__sec]\n";
    EXPECT_EQ(text.substr(0, head.size()), head);
    const auto lines = std::count(text.begin(), text.end(), '\n');
    EXPECT_EQ(static_cast<std::size_t>(lines), 4 + recording.rows.at("Gyroscope_2").size());
    EXPECT_EQ(recording.dumpText("Magnetometer").substr(0, 21), "LUID=020f000100000002");
    EXPECT_EQ(recording.dumpText("Barometer"), "");
}

TEST(RecordingTest, SamplesComeAtTheRateInOrderAndToTheEnd) {
    RecordingOptions options = shortRun();
    options.secondary = true;
    options.rateHz = 50.0;
    options.jitterMs = 3.0;
    const Recording recording = record(options);
    const double end = recording.truth.stages.back().end;
    for (const auto& [name, rows] : recording.rows) {
        SCOPED_TRACE(name);
        EXPECT_NEAR(static_cast<double>(rows.size()), end / 20.0, 2.0);
        for (std::size_t i = 0; i < rows.size(); ++i) {
            EXPECT_EQ(rows[i].time, std::round(rows[i].time));
            EXPECT_GE(rows[i].time, i == 0 ? 0.0 : rows[i - 1].time);
        }
        EXPECT_GT(rows.back().time, end - 50.0);
    }
}

TEST(RecordingTest, NoiseIsAsStrongAsAsked) {
    RecordingOptions options = shortRun();
    options.flow = Flow::Minimal;
    options.holdSeconds = 30.0;
    options.noiseG = 0.004;
    options.noiseDps = 0.3;
    options.noiseMg = 5.0;
    options.hand = {0.0, 0.0, 0.0};
    const Recording recording = record(options);
    const std::map<std::string, double> expected = {
        {"Accelerometer", 0.004}, {"Gyroscope", 0.3}, {"Magnetometer", 5.0}};
    for (const auto& [name, noise] : expected) {
        const Spread spread = spreadOf(recording.rows.at(name), recording.truth.stages[0]);
        for (std::size_t axis = 0; axis < 3; ++axis) {
            // Four standard errors of the deviation of 3000 samples.
            EXPECT_NEAR(spread.deviation[axis] / noise, 1.0, 4.0 / std::sqrt(6000.0)) << name;
        }
    }
}

// (scale * axisMapping) * (reading - offset) is what a perfect sensor reads.
TEST(RecordingTest, TruthUndoesTheErrors) {
    for (const bool leftHanded : {false, true}) {
        RecordingOptions options = shortRun(3);
        options.secondary = true;
        options.leftHanded = leftHanded;
        const Recording recording = record(options);
        options.perfect = true;
        const Recording perfect = record(options);
        for (const auto& [name, truth] : recording.truth.sensors) {
            SCOPED_TRACE(name);
            EXPECT_EQ(determinant(truth.axisMapping), leftHanded ? -1.0 : 1.0);
            for (const StillStage& stage : recording.truth.stages) {
                const Vec3 raw = spreadOf(recording.rows.at(name), stage).mean;
                const Vec3 ideal = spreadOf(perfect.rows.at(name), stage).mean;
                const Vec3 undone = (truth.scale * truth.axisMapping) * (raw - truth.offset);
                // The noise is the same in both, but comes through another matrix.
                EXPECT_LT(norm(undone - ideal), 2.0 * truth.noise);
            }
        }
    }
}

TEST(RecordingTest, ErrorsHaveTheirUsualSizes) {
    RecordingOptions options = shortRun();
    options.hardIronMg = 420.0;
    options.crossAxis = false;
    const Recording recording = record(options);
    const SensorTruth& magnetometer = recording.truth.sensors.at("Magnetometer");
    EXPECT_NEAR(norm(magnetometer.offset), 420.0, 1e-9);
    EXPECT_EQ(magnetometer.scale.rows[0].y, 0.0);
    EXPECT_NE(magnetometer.scale.rows[0].x, 1.0);
    options.perfect = true;
    EXPECT_EQ(record(options).truth.sensors.at("Magnetometer").scale, identity3());
}

// What a mistake or a fault does to the mean readings of the stage in which it happens.
class WrongRunTest : public testing::Test {
  protected:
    Vec3 meanOf(const std::string& name, std::size_t stage) const {
        const Recording recording = record(options);
        return spreadOf(recording.rows.at(name), recording.truth.stages.at(stage)).mean;
    }

    RecordingOptions options = [] {
        RecordingOptions run = shortRun();
        run.perfect = true;
        run.holdSeconds = 1.0;
        return run;
    }();
};

TEST_F(WrongRunTest, WrongPositionTurnsGravityRound) {
    options.mistake = Mistake::WrongPosition;
    EXPECT_NEAR(meanOf("Accelerometer", 2).y, -1.0, 0.01);
    EXPECT_NEAR(meanOf("Accelerometer", 3).z, 1.0, 0.01);
    options.flow = Flow::Minimal;
    EXPECT_NEAR(meanOf("Accelerometer", 0).z, -1.0, 0.01);
}

TEST_F(WrongRunTest, TurnsGoWhereTheyShouldNot) {
    options.flow = Flow::MagAccuracy;
    const double north = options.fieldMg * 0.5;
    options.mistake = Mistake::SkippedTurn;
    EXPECT_NEAR(meanOf("Magnetometer", 2).x, north, 2.0);
    options.mistake = Mistake::HalfTurn;
    EXPECT_NEAR(meanOf("Magnetometer", 2).x, north * std::sqrt(0.5), 2.0);
    options.mistake = Mistake::WrongTurn;
    EXPECT_NEAR(meanOf("Magnetometer", 2).y, north, 2.0);
    EXPECT_NEAR(meanOf("Magnetometer", 3).x, -north, 2.0);
}

TEST_F(WrongRunTest, KnockTiltsTheDevice) {
    options.mistake = Mistake::MovedDevice;
    EXPECT_NEAR(meanOf("Accelerometer", 2).y, std::cos(25.0 * kRadiansPerDegree), 0.01);
    EXPECT_NEAR(meanOf("Accelerometer", 3).z, 1.0, 0.01);
}

TEST_F(WrongRunTest, MagnetIsThereForOneStage) {
    const Vec3 before = meanOf("Magnetometer", 1);
    const Vec3 during = meanOf("Magnetometer", 2);
    const Vec3 after = meanOf("Magnetometer", 3);
    options.mistake = Mistake::Magnet;
    EXPECT_LT(norm(meanOf("Magnetometer", 1) - before), 0.01);
    EXPECT_GT(norm(meanOf("Magnetometer", 2) - during), 100.0);
    EXPECT_LT(norm(meanOf("Magnetometer", 3) - after), 0.01);
}

TEST_F(WrongRunTest, SilentSensorAndCutShortEndEarly) {
    const double full = record(options).rows.at("Gyroscope").back().time;
    options.mistake = Mistake::SilentSensor;
    const Recording silent = record(options);
    EXPECT_NEAR(silent.rows.at("Gyroscope").back().time, silent.truth.stages[2].begin + 500.0,
                15.0);
    EXPECT_EQ(silent.rows.at("Accelerometer").back().time, full);
    options.mistake = Mistake::CutShort;
    EXPECT_EQ(record(options).truth.stages.size(), 3u);
}

TEST_F(WrongRunTest, FaultsShowInTheReadings) {
    const Vec3 good = meanOf("Magnetometer", 0);
    options.fault = Fault::EllipticMag;
    EXPECT_NEAR(meanOf("Magnetometer", 1).x, 1.3 * options.fieldMg * std::sin(kPi / 3.0), 2.0);
    options.fault = Fault::Heading30;
    EXPECT_NEAR(std::atan2(meanOf("Magnetometer", 0).x, meanOf("Magnetometer", 0).y), kPi / 6.0,
                0.02);
    EXPECT_NEAR(meanOf("Magnetometer", 0).z, good.z, 2.0);
    options.fault = Fault::WrongMounting;
    EXPECT_NEAR(std::abs(meanOf("Accelerometer", 1).y), 1.0, 0.01);
    options.faultSensor = SensorKind::Magnetometer;
    EXPECT_NEAR(std::abs(meanOf("Accelerometer", 1).x), 1.0, 0.01);
}

TEST_F(WrongRunTest, GyroscopeThatReadsTooMuch) {
    const auto sumOf = [this] {
        const Recording recording = record(options);
        double sum = 0.0;
        for (const Row& row : recording.rows.at("Gyroscope")) {
            sum += row.values[1] * 0.01;
        }
        return sum;
    };
    EXPECT_NEAR(sumOf(), 90.0, 1.0);
    options.fault = Fault::GyroScale10;
    EXPECT_NEAR(sumOf(), 99.0, 1.0);
}

TEST_F(WrongRunTest, SpikesAndNoise) {
    options.fault = Fault::Noisy;
    options.flow = Flow::Minimal;
    options.holdSeconds = 4.0;
    const Recording noisy = record(options);
    EXPECT_GT(spreadOf(noisy.rows.at("Gyroscope"), noisy.truth.stages[0]).deviation.x, 1.2);
    options.fault = Fault::Spiky;
    const Recording spiky = record(options);
    int spikes = 0;
    for (const Row& row : spiky.rows.at("Accelerometer")) {
        spikes +=
            std::abs(row.values[0]) + std::abs(row.values[1]) + std::abs(row.values[2] - 1.0) > 0.5
                ? 1
                : 0;
    }
    EXPECT_EQ(spikes, 10);
}

}  // namespace
}  // namespace tavocal::simulator
