#include "sampling/Replay.h"

#include <algorithm>

#include "log/Logger.h"
#include "sampling/SampledRun.h"
#include "support/Lines.h"

namespace tavocal::test {

using enum RunCommand;

static bool endsWithMove(const std::string& line) {
    return line.ends_with("SensorManager: Can move next!!");
}

TEST(Replay, GoesOnUntilTheLastStage) {
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

}  // namespace tavocal::test
