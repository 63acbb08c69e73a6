#include <algorithm>
#include <cmath>

#include "calibration/InertialBlock.h"
#include "numerics/NumericsTesting.h"
#include "support/LiveMotionRun.h"
#include "support/Outcome.h"

// What holds of every calibration, whatever was measured.
namespace tavocal::test {
namespace {

const char* const kNames[] = {"Accelerometer", "Gyroscope", "Magnetometer"};

bool allFinite(const Vector& values) {
    return countNotFinite(values) == 0;
}

// A block that the firmware takes, made of numbers; or none. True for a block.
bool makesGoodBlock(LiveMotionRun& run, const std::string& name) {
    SCOPED_TRACE(name);
    const std::string failure = run.calibrate(name);
    const InertialSensor& sensor = *run.sensors.at(name);
    if (sensor.calibrationToWrite.empty()) {
        return false;
    }
    EXPECT_EQ(failure, kNoFailure);
    EXPECT_EQ(failureOf([&] { sensor.validateCalibrationData(sensor.calibrationToWrite); }),
              kNoFailure);
    EXPECT_TRUE(allFinite(sensor.offsetVector) && allFinite(flattened(sensor.scaleMatrix)) &&
                allFinite(flattened(sensor.axisMapping)) && allFinite(sensor.noiseVector));
    return true;
}

// The linear part of the calibration.
Matrix mapOf(const InertialSensor& sensor) {
    return sensor.scaleMatrix * sensor.axisMapping;
}

double distance(const Matrix& a, const Matrix& b) {
    return largestMagnitude(flattened(a) - flattened(b));
}

}  // namespace

// One reading in `rarity` has one axis with a value that no sensor has.
TEST(CalibrationLaws, AnyReadingsGiveAGoodBlockOrNone) {
    constexpr double kOdd[] = {kNotANumber, kInfinity, -kInfinity,  1e308,       -1e308,
                               5e-324,      -0.0,      2147.483647, -2147.483648};
    const std::pair<simulator::Flow, FlowType> flows[] = {
        {simulator::Flow::FourSteps, FlowType::FourSteps},
        {simulator::Flow::Minimal, FlowType::Minimal},
        {simulator::Flow::Full, FlowType::Full}};
    RandomNumbers random(1);
    int blocks = 0;
    int runs = 0;
    for (const auto& [recorded, flow] : flows) {
        const int rounds = flow == FlowType::Full ? 2 : 6;
        for (int round = 0; round < rounds; ++round) {
            SCOPED_TRACE(static_cast<int>(flow) * 100 + round);
            const double share = round == 0 ? 0.0 : std::pow(10.0, random.between(-4.0, 0.0));
            const double odd = kOdd[static_cast<std::size_t>(random.between(0.0, 9.0))];
            Lies lies;
            lies.values = [&](std::vector<double>& values) {
                if (random.between(0.0, 1.0) < share) {
                    values[static_cast<std::size_t>(random.between(0.0, 3.0))] = odd;
                }
            };
            LiveMotionRun run(shortRecording(recorded), flow, lies);
            for (const char* name : kNames) {
                blocks += makesGoodBlock(run, name) ? 1 : 0;
                ++runs;
            }
        }
    }
    EXPECT_GT(blocks, 8);
    EXPECT_LT(blocks, runs - 8);
}

TEST(CalibrationLaws, TheOwnMeansBecomeWhatIsExpected) {
    LiveMotionRun run(shortRecording(simulator::Flow::Full), FlowType::Full);
    for (const auto& [name, tolerance] :
         {std::pair("Accelerometer", 1e-9), {"Gyroscope", 1e-9}, {"Magnetometer", 5.0}}) {
        ASSERT_EQ(run.calibrate(name), kNoFailure);
        const InertialSensor& sensor = *run.sensors.at(name);
        for (int i = 0; i < sensor.stillStageCount; ++i) {
            EXPECT_LT(norm(sensor.calibratedStageMean(i) - sensor.expectedRow(i)), tolerance)
                << name << i;
        }
    }
}

// Sensors with other axes, and mirrored: what is told of the device stays the same. The fit
// of the magnetometer's ellipsoid favours an axis, but not its direction.
TEST(CalibrationLaws, OtherAxesOfTheSensorsGiveTheSameCalibrationOfOtherAxes) {
    const simulator::Recording& recording = shortRecording(simulator::Flow::Full);
    LiveMotionRun plain(recording, FlowType::Full);
    for (const char* name : kNames) {
        ASSERT_EQ(plain.calibrate(name), kNoFailure);
    }
    const Matrix turn(3, 3, {0, 1, 0, 0, 0, -1, 1, 0, 0});
    Lies lies;
    lies.values = [&turn](std::vector<double>& values) {
        const Vector turned = turn * Vector(values.data(), 3);
        std::copy(turned.begin(), turned.end(), values.begin());
    };
    LiveMotionRun run(recording, FlowType::Full, lies);
    EXPECT_EQ(run.process->segmentTimes, plain.process->segmentTimes);
    for (const auto& [name, tolerance] :
         {std::pair("Accelerometer", 1e-9), {"Gyroscope", 1e-9}, {"Magnetometer", 1e-2}}) {
        SCOPED_TRACE(name);
        ASSERT_EQ(run.calibrate(name), kNoFailure);
        const InertialSensor& sensor = *run.sensors.at(name);
        const InertialSensor& other = *plain.sensors.at(name);
        EXPECT_LT(distance(mapOf(sensor) * turn, mapOf(other)), tolerance);
        EXPECT_EQ(distance(sensor.axisMapping * turn, other.axisMapping), 0.0);
        EXPECT_LT(norm(sensor.offsetVector - turn * other.offsetVector), 300.0 * tolerance);
    }
}

}  // namespace tavocal::test
