#include "sampling/LiveSampling.h"

#include "sampling/SampledRun.h"

namespace tavocal::test {

TEST(LiveSampling, ReversesStoresAndHandsOnLiveSamples) {
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

TEST(LiveSampling, StopWithoutSensorsFails) {
    EXPECT_EQ(failureOf([] { SensorManager().stopSampling(); }),
              "No sensors were set for sampling");
}

}  // namespace tavocal::test
