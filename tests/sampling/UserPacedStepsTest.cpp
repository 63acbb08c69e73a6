#include "sampling/UserPacedSteps.h"

#include <cstdio>

#include "sampling/FakeRunParts.h"
#include "sampling/SamplingState.h"
#include "support/TempFolder.h"

namespace tavocal::test {

TEST(UserPacedSteps, EachMovementIsCheckedAtItsKey) {
    const TempFolder folder;
    ASSERT_NE(std::freopen(folder.write("typed.txt", "").c_str(), "rb", stdin), nullptr);
    // What the sensor is asked for by three turns and a walk, with so many samples at the keys.
    const auto asked = [](const std::string& sensorName) {
        SamplingState state;
        state.sensors = fakeSensors({sensorName});
        const auto process = std::make_shared<FakeProcess>();
        process->indicators = sensorName + ";";
        process->runType = RunCommand::MagEnvironmentTest;
        state.process = process;
        UserPacedSteps steps(state);
        for (const std::size_t stored : {100U, 250U, 400U, 600U}) {
            state.samples[state.sensors[0]].resize(stored);
            steps.waitForKey(stored == 400);
        }
        return static_cast<FakeSensor&>(*state.sensors[0]).calls;
    };
    EXPECT_EQ(asked("Magnetometer"), "turn 0-99 turn 100-249 turn 250-399 end turns:3 walk ");
    EXPECT_EQ(asked("Gyroscope_2"), "end ");
}

}  // namespace tavocal::test
