#include "sensors/inertial/InertialSensor.h"

#include <sstream>

#include "sensors/SensorFactory.h"
#include "sensors/magnetic/Magnetometer.h"
#include "sensors/motion/Accelerometer.h"
#include "sensors/motion/Gyroscope.h"
#include "support/InertialBench.h"
#include "vocabulary/SensorTypes.h"

namespace tavocal::test {

namespace {

using Bench = InertialBench<InertialSensor>;

// Limits of offset, norm spread, error, noise, scale and rotation, norm and its tolerance, the
// default noise, deviation and offset face up; then what stillness and movement are judged by.
template <typename Class>
std::string limitsOf(const std::string& name, FlowType flow) {
    const InertialBench<Class> bench(name, flow);
    Class& s = *bench.sensor;
    s.setThresholds();
    const GateLimits& l = s.limits;
    std::ostringstream text;
    for (const double limit :
         {l.offsetLimit, l.normStdLimit, l.expectedErrorLimit, l.whiteNoiseLimit, l.scaleLimit,
          l.rotationLimit, l.expectedNorm, l.normTolerance, s.defaultNoise, s.faceUpStdLimit,
          s.faceUpOffsetLimit, s.stillness.stillFloor, s.stillness.stillStdLimit,
          s.stillness.stillRangeLimit, s.moveThreshold, s.rotationThreshold}) {
        text << limit << ' ';
    }
    return text.str();
}

}  // namespace

TEST(InertialSensorTest, LimitsDependOnClassAndFlow) {
    for (int i = 0; i < 5; ++i) {
        const auto flow = static_cast<FlowType>(i);
        const bool full = flow == FlowType::Full;
        EXPECT_EQ(limitsOf<Accelerometer>("Accelerometer", flow),
                  full || flow == FlowType::AccelerometerOnly
                      ? "0.3 0.001 0.001 0.015 0.3 5 1 0.02 0.001 0.05 0.3 0.0005 0.015 0.08 1 0 "
                      : "0.3 0.04 0.2 0.06 0.5 0.3 1 0.02 0 0.05 0.3 0.0005 0.015 0.08 1 0 ");
        EXPECT_EQ(limitsOf<Gyroscope>("Gyroscope", flow),
                  full ? "30 100 10 15 0.3 5 0 20 0.1 5 50 0.1 5 15 0 200 "
                       : "50 100 40 15 0.5 0.3 0 20 0.1 5 50 0.1 5 15 0 200 ");
        EXPECT_EQ(limitsOf<Magnetometer>("Magnetometer", flow),
                  full ? "10000 30 150 15 1 20 450 200 1 40 5000 1 30 100 300 200 "
                       : "10000 30 150 50 1 1 450 200 1 40 5000 1 30 100 300 200 ");
    }
}

// A stage's last sample belongs to the motion that ended it, so the 99 others decide.
TEST(InertialSensorTest, StatisticsOfTheStages) {
    Bench bench("Accelerometer", FlowType::FourSteps);
    InertialSensor& sensor = *bench.sensor;
    for (int i = 0; i < 4; ++i) {
        bench.addStage(ones3() * (1.0 * i), i == 1 ? 0.5 : 0.0);
    }
    sensor.setStageRows();
    EXPECT_NEAR(sensor.calcWhiteNoise()[2], std::sqrt(75.0 / 401.0), 1e-12);
    sensor.ComputeStaticSegmentsMeans();
    sensor.ComputeStaticSegmentsStds();
    EXPECT_EQ(sensor.stageMeans, Matrix(4, 3, {0, 0, 0, 1, 1, 1, 2, 2, 2, 3, 3, 3}));
    EXPECT_EQ(sensor.stageStds, Matrix(4, 3, {0, 0, 0, 0.5, 0.5, 0.5, 0, 0, 0, 0, 0, 0}));
    sensor.computeStageStatistics();
    EXPECT_EQ(sensor.stageMeans, Matrix(4, 3, {0, 0, 0, 1.5, 1.5, 1.5, 2, 2, 2, 3, 3, 3}));
    EXPECT_NEAR(sensor.noiseVector[0], std::sqrt(0.25 - 0.25 / 99.0 / 99.0) / 4.0, 1e-12);
    bench.run.stages = 0;
    sensor.setStageRows();
    EXPECT_EQ(failureOf([&] { sensor.calcWhiteNoise(); }), "Error. Divider is zero.");
}

// In the Full flow a position is a stage and the one behind its turn; the fourth has none.
TEST(InertialSensorTest, FullFlowTakesTwoStagesForAPosition) {
    Bench bench("Accelerometer", FlowType::Full);
    bench.run.stages = 7;
    for (int i = 0; i < 7; ++i) {
        bench.addStage(ones3() * (1.0 * i));
    }
    bench.sensor->setStageRows();
    bench.sensor->defaultNoise = 9.0;
    EXPECT_TRUE(bench.sensor->computeStageStatistics());
    EXPECT_EQ(bench.sensor->stageMeans, Matrix(4, 3, {1, 1, 1, 3, 3, 3, 5, 5, 5, 6, 6, 6}));
    EXPECT_NEAR(bench.sensor->noiseVector[1], 0.75 * std::sqrt(99.0 * 100.0) / 199.0, 1e-12);
    // Rounding may leave constant readings without a noise.
    for (Sample& sample : bench.sensor->bufferedData) {
        sample.values = {0.0, 0.01, 0.0};
    }
    EXPECT_FALSE(bench.sensor->computeStageStatistics());
    EXPECT_EQ(bench.sensor->noiseVector[1], 9.0);
}

// However good the rest is: the medians don't show such a sample.
TEST(InertialSensorTest, SampleThatIsNoNumberLeavesNoNoise) {
    for (const double bad : {kNotANumber, kInfinity, 1e200}) {
        for (const FlowType flow : {FlowType::FourSteps, FlowType::AccelerometerOnly}) {
            InertialBench<Accelerometer> bench("Accelerometer", flow);
            bench.sensor->buildExpectedValues();
            for (int p = 0; p < 4; ++p) {
                bench.addStage(bench.sensor->expectedRow(p));
            }
            bench.sensor->bufferedData[150].values[1] = bad;
            EXPECT_EQ(failureOf([&] { bench.sensor->calibrate(); }),
                      "Calibration failed for sensor Accelerometer. Reason: Calculated calibration "
                      "is not finite.\n");
        }
        Bench bench("Magnetometer", FlowType::Full);
        bench.run.stages = 7;
        for (int i = 0; i < 7; ++i) {
            bench.addStage({0.0, 0.01, 0.0});  // whose noise rounding loses
        }
        bench.sensor->bufferedData[30].values[1] = bad;
        bench.sensor->setStageRows();
        EXPECT_FALSE(bench.sensor->computeStageStatistics());
        EXPECT_TRUE(std::isnan(bench.sensor->noiseVector[1]));
    }
}

// A stage that holds nothing but its last sample shows no position; a gyroscope takes all stages
// for one.
TEST(InertialSensorTest, PositionWithoutSamplesIsNamed) {
    for (const auto& [name, flow, shortStages, boundary] :
         {std::tuple("Accelerometer", FlowType::FourSteps, "0", "1"),
          std::tuple("Accelerometer", FlowType::FourSteps, "12", "3"),
          std::tuple("Accelerometer_2", FlowType::AccelerometerOnly, "3", "7"),
          std::tuple("Accelerometer", FlowType::Full, "6", "13"),
          std::tuple("Magnetometer", FlowType::Full, "6", "13"),
          std::tuple("Gyroscope", FlowType::FourSteps, "0123", "1")}) {
        Bench bench(name, flow);
        InertialSensor& sensor = *bench.sensor;
        bench.run.stages = flow == FlowType::Full ? 7 : 4;
        for (int i = 0; i < bench.run.stages; ++i) {
            bench.addStage(ones3());
            if (contains(shortStages, std::to_string(i))) {
                auto& samples = sensor.bufferedData;
                const bool last = i + 1 == bench.run.stages;
                samples.erase(samples.end() - 100, samples.end() - (last ? 0 : 1));
            }
        }
        EXPECT_EQ(failureOf([&] { sensor.calibrate(); }),
                  sensor.name + " Calibration Error: No data was sampled during stage " + boundary);
    }
}

TEST(InertialSensorTest, WhatCannotBeAskedIsRefused) {
    Bench bench("Accelerometer", FlowType::FourSteps);
    InertialSensor& sensor = *bench.sensor;
    const std::string invalid = "Internal error. Invalid operation was performed";
    for (const bool fromStageMeans : {false, true}) {
        EXPECT_EQ(failureOf([&] { sensor.calibratedSample(99, fromStageMeans); }),
                  "exception thrown in calibration");
    }
    sensor.noiseVector = Vector(2);
    EXPECT_EQ(failureOf([&] { sensor.whiteNoiseInFirmwareUnits(); }), invalid);
    const auto unflagged = makeSensor({kAccelerometerType, 0, 0, 0, 0});
    EXPECT_EQ(failureOf([&] { unflagged->setWhiteNoise(1.0); }), invalid);
    bench.addStage(ones3() * std::numeric_limits<double>::infinity());
    sensor.stageMeans = Matrix(1, 3);
    bench.run.stages = 1;
    EXPECT_EQ(failureOf([&] { sensor.ComputeStaticSegmentsMeans(); }),
              "Infinity value was found. Calibration is invalid for Accelerometer");
}

}  // namespace tavocal::test
