#include "sampling/SensorManager.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

#include "base/Failures.h"
#include "formats/CsvParser.h"
#include "formats/DumpPaths.h"
#include "platform/Console.h"
#include "sampling/FakeRunParts.h"
#include "support/MessageOf.h"
#include "support/TempFolder.h"

namespace tavocal::test {
namespace {

// A run of three stages. `log` tells who took a sample, with time and value: "A20=9", and that the
// sequence did: "!".
class SensorManagerTest : public testing::Test {
  protected:
    void setUp(const std::string& displayNames, RunCommand command = RunCommand::Calibrate) {
        sensors = fakeSensors(displayNames);
        process->runType = command;
        process->stageCount = 2;
        process->stagesDone = 0;
        process->onControl = [this](const Sample&) { log += "! "; };
        process->calls.clear();
        manager.setSensors(sensors);
        manager.setProcess(process);
        for (const auto& sensor : sensors) {
            fake(sensor).onSample = [this, letter = sensor->name[0]](const Sample& sample) {
                log += letter + std::to_string(std::lround(sample.timestamp)) + "=" +
                       std::to_string(std::lround(sample.values[0])) + " ";
            };
        }
    }
    static FakeSensor& fake(const std::shared_ptr<Sensor>& sensor) {
        return static_cast<FakeSensor&>(*sensor);
    }
    // Every sample that reaches the sequence ends a stage.
    void endStages() {
        process->onControl = [this](const Sample&) {
            ++process->stagesDone;
            process->canMoveNext = true;
        };
    }
    void live(std::size_t sensor, double time, const std::vector<double>& values = {7.0}) {
        manager.handleData(sensors[sensor], values, time);
    }
    // Replays dumps with samples of 1 g at the times of each sensor.
    template <typename Failure = CalibrationException>
    std::string replay(const std::vector<std::vector<double>>& times) {
        SensorDataMap samples;
        for (std::size_t i = 0; i < times.size(); ++i) {
            for (const double time : times[i]) {
                samples[sensors[i]].push_back({time, {1.0}});
            }
        }
        CsvParser().writeToFile(dumpTemplate(folder.path(), "d.csv"), samples);
        testing::internal::CaptureStdout();
        manager.loadDump(folder.path(), "d", false);
        EXPECT_EQ(printed(), "Loading data dump, this might take a while...\n");
        return messageOf<Failure>([&] { manager.playData(); });
    }
    static std::string printed() {
        platform::Console::instance().flush();
        return testing::internal::GetCapturedStdout();
    }
    std::string waited() {
        return messageOf<CalibrationException>([&] { manager.waitForStepFinish(true); });
    }

    const TempFolder folder;
    std::vector<std::shared_ptr<Sensor>> sensors;
    std::shared_ptr<FakeProcess> process = std::make_shared<FakeProcess>();
    SensorManager manager;
    std::string log;
};

TEST_F(SensorManagerTest, SensorsAreOfferedUpToTheFirstPrimaryOne) {
    // Stages are found by an accelerometer of the run's own if the last offer isn't enough.
    for (const auto& [names, calls] :
         {std::pair("Accelerometer_2 Accelerometer", "Accelerometer_2 Accelerometer built"),
          std::pair("Accelerometer Accelerometer_2", "Accelerometer built"),
          std::pair("Gyroscope Magnetometer Gyroscope_2 Magnetometer_2 Accelerometer",
                    "Gyroscope Magnetometer Accelerometer built"),
          std::pair("AmbientLightSensor_2 Accelerometer AmbientLightSensor",
                    "light:AmbientLightSensor_2 Accelerometer light:AmbientLightSensor built"),
          std::pair("Accelerometer Gyroscope", "Accelerometer Gyroscope Accelerometer built"),
          std::pair("Magnetometer_2", "Magnetometer_2 Accelerometer built")}) {
        setUp(names);
        EXPECT_EQ(process->calls, calls);
    }
    EXPECT_EQ(&process->offered->run(), &manager);
    manager.prepareSensors();
    EXPECT_EQ(manager.findSensor("0073000000000000")->sensor, process->offered);
    EXPECT_EQ(manager.findSensor("0073000000000000")->rawDivisor, 1000000);
    EXPECT_FALSE(manager.findSensor("0073000000000002"));
    for (const std::string type : {"Magnetometer", "AmbientLightSensor"}) {
        process->types = {type};
        EXPECT_EQ(messageOf<CalibrationException>([&] { setUp("Accelerometer"); }),
                  "Could not locate sensor " + type + " for sampling. " + type +
                      " is mandatory for this calibration process");
        setUp(type);
    }
}

TEST_F(SensorManagerTest, SensorsAskTheRunThroughIt) {
    setUp("Accelerometer");
    process->flowType = FlowType::FourSteps;
    process->segmentTimes = {1, 2};
    process->lightSegments = {3};
    RunContext& run = sensors[0]->run();
    EXPECT_EQ(run.runType(), RunCommand::Calibrate);
    EXPECT_EQ(run.flowType(), FlowType::FourSteps);
    EXPECT_EQ(run.stageCount(), 2);
    EXPECT_EQ(run.segmentTimes(), process->segmentTimes);
    EXPECT_EQ(run.lightSegments(), process->lightSegments);
    EXPECT_FALSE(run.isInteractive());
    run.addFailure(1, "Gyroscope");
    EXPECT_EQ(manager.failureSummary(), "2\tGyroscope: Check Axis Mapping\n");
    manager.stageChanged("300");
    EXPECT_EQ(fake(sensors[0]).calls, "stage 300 ");
}

TEST_F(SensorManagerTest, ReplayEndsWithTheLastStage) {
    setUp("Gyroscope Accelerometer");
    endStages();
    EXPECT_EQ(replay({{10, 20, 30}, {20, 30, 40}}), kNoFailure);
    EXPECT_EQ(log, "G10=1 A20=1 G20=1 A30=1 ");
    EXPECT_EQ(waited(), kNoFailure);
}

TEST_F(SensorManagerTest, ReplayNamesTheSensorThatEndedEarly) {
    setUp("Gyroscope Accelerometer");
    endStages();
    EXPECT_EQ(replay({{10}, {20, 500}}),
              "Data streaming rate was invalid. Not enough data points were sampled for Gyroscope");
}

TEST_F(SensorManagerTest, OnlyCalibrationsMustReachTheLastStage) {
    const std::string tooShort =
        "Unexpected data dump size. Not enough data for completing the calibration process";
    for (const auto& [command, message] :
         {std::pair(RunCommand::Calibrate, tooShort), std::pair(RunCommand::CalibrateAls, tooShort),
          std::pair(RunCommand::TestCalibration, std::string(kNoFailure)),
          std::pair(RunCommand::MagEnvironmentTest, std::string(kNoFailure))}) {
        setUp("Accelerometer", command);
        EXPECT_EQ(replay({{10, 20}}), message);
    }
    process->canMoveNext = true;
    EXPECT_EQ(replay({{10, 20}}), kNoFailure);
    EXPECT_EQ(process->stagesDone, 1);
}

// A sensor's failure leaves the run with what got through; that of a light stage ends it.
TEST_F(SensorManagerTest, FailureEndsTheReplay) {
    setUp("Gyroscope Accelerometer");
    fake(sensors[0]).onSample = [](const Sample&) { throw CalibrationException("torn off"); };
    EXPECT_EQ(replay({{15}, {10, 20}}), kNoFailure);
    EXPECT_EQ(log, "A10=1 ! ");
    EXPECT_EQ(waited(), "torn off");
    fake(sensors[0]).onSample = [](const Sample&) { throw SamplingException("too dark"); };
    EXPECT_EQ(replay<SamplingException>({{15}, {10, 20}}), "too dark");
}

TEST_F(SensorManagerTest, LiveSamplesAreReversedStoredAndHandedOn) {
    setUp("Gyroscope Accelerometer");
    manager.prepareSensors();
    live(0, 500.0, {1.0, 2.0});
    live(0, 1000.0);
    live(1, 5900.0);
    live(1, 6000.0, {9.0});
    process->indicators = "Gyroscope;Accelerometer;";
    live(0, 6010.0);
    fake(sensors[0]).accepts = false;
    live(0, 6020.0);
    live(0, 6020.0, {});
    EXPECT_EQ(log, "A0=10 ! G10=8 ! G20=8 ");
    EXPECT_EQ(manager.getSamples().at(sensors[1])[0].values, Vector{9.5});
    EXPECT_EQ(manager.getSamples().at(sensors[0]).size(), 2U);
}

TEST_F(SensorManagerTest, StageEndsAtASampleOfAnIndicator) {
    setUp("Gyroscope Accelerometer");
    live(0, 1.0);
    live(1, 2.0);
    process->canMoveNext = true;
    live(0, 10.0);
    EXPECT_TRUE(process->canMoveNext);
    live(1, 20.0);
    EXPECT_FALSE(process->canMoveNext);
    EXPECT_EQ(waited(), kNoFailure);
    fake(sensors[1]).onSample = [](const Sample&) { throw MathException("odd"); };
    live(1, 30.0);
    fake(sensors[1]).onSample = [](const Sample&) { throw SamplingException("too dark"); };
    live(1, 40.0);
    EXPECT_EQ(waited(), "Math Error: odd");
    manager.stageDone(false);
    EXPECT_EQ(waited(), "Math Error: odd");
}

TEST_F(SensorManagerTest, KeyEndsAStepOfTheMagneticEnvironmentTest) {
    ASSERT_NE(std::freopen(folder.write("typed.txt", "").c_str(), "rb", stdin), nullptr);
    process->userPaced = true;
    process->types = {"Magnetometer"};
    process->indicators = "Magnetometer;Accelerometer;Magnetometer_2;";
    setUp("Magnetometer Magnetometer_2 Accelerometer", RunCommand::MagEnvironmentTest);
    process->indicators = "Magnetometer;Magnetometer_2;";
    for (const double time : {1.0, 2.0, 3.0, 4.0}) {
        live(0, time);
        live(2, time);
        live(1, time);
    }
    process->canMoveNext = true;
    live(1, 6.0);
    EXPECT_TRUE(process->canMoveNext);
    testing::internal::CaptureStdout();
    EXPECT_EQ(waited(), kNoFailure);
    EXPECT_EQ(printed(), "User pressed to signal end\n");
    EXPECT_EQ(fake(sensors[1]).calls, "turn 0-3 end turns:1 ");
    EXPECT_EQ(process->stagesDone, 1);
    process->indicators = "";
    EXPECT_EQ(waited(), "Error. stageIndicatorSensor is NULL");
}

}  // namespace
}  // namespace tavocal::test
