#include "sampling/SensorManager.h"

#include <cstdio>

#include "sampling/SampledRun.h"

namespace tavocal::test {

// Stages are found by an accelerometer of the run's own if what is offered isn't enough.
TEST(SensorManager, MotionRunGetsAnAccelerometer) {
    SampledRun run({"Gyroscope"});
    EXPECT_EQ(run.process->calls, "Gyroscope Accelerometer built");
    EXPECT_EQ(&run.process->offered->run(), &run.manager.context());
    run.manager.prepareSensors();
    EXPECT_EQ(run.manager.findSensor("0073000000000000")->sensor, run.process->offered);
    EXPECT_FALSE(run.manager.findSensor("0073000000000002"));
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

TEST(SensorManager, KeyEndsAStepOfTheMagneticEnvironmentTest) {
    const TempFolder folder;
    ASSERT_NE(std::freopen(folder.write("typed.txt", "").c_str(), "rb", stdin), nullptr);
    SampledRun run({"Magnetometer", "Accelerometer"}, RunCommand::MagEnvironmentTest);
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
