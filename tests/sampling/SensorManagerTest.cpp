#include "sampling/SensorManager.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "formats/CsvParser.h"
#include "log/Logger.h"
#include "sampling/FakeRunParts.h"
#include "support/Lines.h"
#include "support/TempFolder.h"

namespace tavocal::test {

using enum RunCommand;

// A run of two stages, each of which one sample of the accelerometer ends.
struct SampledRun {
    explicit SampledRun(const std::vector<std::string>& names, RunCommand command = Calibrate)
        : sensors(fakeSensors(names)) {
        process->runType = command;
        process->stageCount = 2;
        process->stagesDone = 0;
        process->onControl = [this] {
            log += "! ";
            ++process->stagesDone;
            process->canMoveNext = true;
        };
        for (std::size_t i = 0; i < sensors.size(); ++i) {
            fake(i).onSample = [this, i](const Sample& sample) {
                log += sensors[i]->name[0] + std::to_string(std::lround(sample.timestamp)) + " ";
            };
        }
        manager.setSensors(sensors);
        manager.setProcess(process);
    }
    template <typename Failure>
    void failAt(std::size_t sensor) {
        fake(sensor).onSample = [](const Sample&) { throw Failure("torn off"); };
    }
    FakeSensor& fake(std::size_t sensor) { return static_cast<FakeSensor&>(*sensors[sensor]); }
    void live(std::size_t sensor, double time, const std::vector<double>& values = {7.0}) {
        manager.handleData(sensors[sensor], values, time);
    }
    // Replays dumps with samples at the times of each sensor.
    std::string replay(const std::vector<std::vector<double>>& times) {
        const TempFolder folder;
        SensorDataMap samples;
        for (std::size_t i = 0; i < times.size(); ++i) {
            for (const double time : times[i]) {
                samples[sensors[i]].push_back({time, {1.0}});
            }
        }
        CsvParser().writeToFile(folder.path() + "\\d.csv", samples);
        manager.loadDump(folder.path(), "d", false);
        return messageOf<std::exception>([&] { manager.playData(); });
    }
    std::string waited() {
        return failureOf([&] { manager.waitForStepFinish(true); });
    }

    std::vector<std::shared_ptr<Sensor>> sensors;
    std::shared_ptr<FakeProcess> process = std::make_shared<FakeProcess>();
    SensorManager manager;
    std::string log;  // who took a sample when, such as "A20", and "!" for the sequence
};

// Stages are found by an accelerometer of the run's own if the last offer isn't enough.
TEST(SensorManager, OffersSensorsUpToTheFirstPrimaryOne) {
    const std::pair<std::vector<std::string>, std::string> rows[] = {
        {{"Accelerometer_2", "Accelerometer"}, "Accelerometer_2 Accelerometer built"},
        {{"Gyroscope", "Magnetometer", "Gyroscope_2", "Magnetometer_2", "Accelerometer"},
         "Gyroscope Magnetometer Accelerometer built"},
        {{"AmbientLightSensor_2", "Accelerometer", "AmbientLightSensor"},
         "light:AmbientLightSensor_2 Accelerometer light:AmbientLightSensor built"},
        {{"Accelerometer", "Gyroscope"}, "Accelerometer Gyroscope Accelerometer built"}};
    for (const auto& [names, calls] : rows) {
        EXPECT_EQ(SampledRun(names).process->calls, calls);
    }
    SampledRun run({"Gyroscope"});
    EXPECT_EQ(&run.process->offered->run(), &run.manager.context());
    run.manager.prepareSensors();
    EXPECT_EQ(run.manager.findSensor("0073000000000000")->sensor, run.process->offered);
    EXPECT_FALSE(run.manager.findSensor("0073000000000002"));
    run.process->types[0] = "Magnetometer";
    EXPECT_EQ(
        failureOf([&] { run.manager.setProcess(run.process); }),
        "Could not locate sensor Magnetometer for sampling. Magnetometer is mandatory for this "
        "calibration process");
}

bool endsWithMove(const std::string& line) {
    return line.ends_with("SensorManager: Can move next!!");
}

TEST(SensorManager, ReplaysUntilTheLastStage) {
    const std::string tooShort =
        "Unexpected data dump size. Not enough data for completing the calibration process";
    const std::string early =
        "Data streaming rate was invalid. Not enough data points were sampled for Gyroscope";
    const std::tuple<RunCommand, std::vector<std::vector<double>>, std::string, std::string>
        rows[] = {{Calibrate, {{10, 20, 30}, {20, 30, 40}}, kNoFailure, "G10 A20 ! G20 A30 ! 2"},
                  {Calibrate, {{10}, {20, 500}}, early, "G10 A20 ! A500 ! 2"},
                  {Calibrate, {{10}, {20}}, tooShort, "G10 A20 ! 1"},
                  {CalibrateAls, {{10}, {20}}, tooShort, "G10 A20 ! 1"},
                  {TestCalibration, {{10}, {20}}, kNoFailure, "G10 A20 ! 1"},
                  {MagEnvironmentTest, {{10}, {20}}, kNoFailure, "G10 A20 ! 2"}};
    for (const auto& [command, times, message, log] : rows) {
        SampledRun run({"Gyroscope", "Accelerometer"}, command);
        const std::size_t logStart = Logger::instance().text().size();
        EXPECT_EQ(run.replay(times), message);
        EXPECT_EQ(run.log + std::to_string(run.process->stagesDone), log);
        const auto lines = linesOf(Logger::instance().text().substr(logStart));
        EXPECT_EQ(std::ranges::count_if(lines, endsWithMove), std::ranges::count(log, '!'));
    }
    // A sensor's failure leaves the run with what got through; that of a light stage ends it.
    SampledRun run({"Gyroscope", "Accelerometer"});
    run.failAt<CalibrationException>(0);
    EXPECT_EQ(run.replay({{15}, {10, 20}}), kNoFailure);
    EXPECT_EQ(run.log, "A10 ! ");
    EXPECT_EQ(run.waited(), "torn off");
    run.failAt<SamplingException>(0);
    EXPECT_EQ(run.replay({{5}, {10, 20}}), "torn off");
}

TEST(SensorManager, ReversesStoresAndHandsOnLiveSamples) {
    SampledRun run({"Gyroscope", "Accelerometer"});
    run.manager.prepareSensors();
    run.live(0, 500.0, {1.0, 2.0});
    run.live(0, 1000.0);
    run.live(1, 5900.0);
    run.live(1, 6000.0, {9.0});
    EXPECT_EQ(run.waited(), kNoFailure);
    run.fake(1).accepts = false;
    run.live(1, 6010.0);
    run.process->canMoveNext = true;
    run.live(0, 6020.0);
    EXPECT_TRUE(run.process->canMoveNext);
    EXPECT_EQ(run.log, "A0 ! A10 G20 ");
    EXPECT_EQ(run.manager.getSamples().at(run.sensors[1])[0].values, Vector{9.5});
    run.failAt<MathException>(1);
    run.live(1, 6030.0);
    EXPECT_EQ(run.waited(), "Math Error: torn off");
}

TEST(SensorManager, StageMayEndTheTimeBase) {
    SampledRun run({"Accelerometer"});
    run.process->keepsTime = false;
    run.live(0, 1000.0);
    run.live(0, 1010.0);
    run.live(0, 1020.0);
    EXPECT_EQ(run.waited(), kNoFailure);
    run.live(0, 1030.0);
    EXPECT_EQ(run.log, "A0 ! A10 ! A1030 ! ");
}

TEST(SensorManager, StopWithoutSensorsFails) {
    EXPECT_EQ(failureOf([] { SensorManager().stopSampling(); }),
              "No sensors were set for sampling");
}

TEST(SensorManager, KeyEndsAStepOfTheMagneticEnvironmentTest) {
    const TempFolder folder;
    ASSERT_NE(std::freopen(folder.write("typed.txt", "").c_str(), "rb", stdin), nullptr);
    SampledRun run({"Magnetometer", "Accelerometer"}, MagEnvironmentTest);
    run.process->paced = true;
    run.process->indicators = "Accelerometer;Magnetometer;";
    for (const std::size_t sensor : {0U, 1U, 0U, 0U}) {
        run.live(sensor, 1.0);
    }
    EXPECT_TRUE(run.process->canMoveNext);
    run.process->indicators = "Magnetometer;";
    EXPECT_EQ(run.waited(), kNoFailure);
    EXPECT_EQ(run.fake(0).calls, "turn 0-1 end turns:1 ");
    EXPECT_EQ(run.process->stagesDone, 3);
    run.failAt<CalibrationException>(0);
    run.live(0, 2.0);
    EXPECT_EQ(run.waited(), "torn off");
    run.process->indicators = "";
    EXPECT_EQ(run.waited(), "Error. stageIndicatorSensor is NULL");
}

}  // namespace tavocal::test
