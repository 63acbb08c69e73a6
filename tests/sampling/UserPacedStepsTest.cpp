#include "sampling/UserPacedSteps.h"

#include "sampling/FakeRunParts.h"

namespace tavocal::test {

TEST(UserPacedSteps, EachMovementIsCheckedAtItsKey) {
    // What the sensor is asked for by three turns and a walk, with so many samples at the keys.
    const auto asked = [](const std::string& sensorName) {
        FakeSensor sensor(sensorName);
        UserPacedSteps steps;
        for (const std::size_t stored : {100U, 250U, 400U, 600U}) {
            steps.finish(sensor, stored, stored == 400);
        }
        return sensor.calls;
    };
    EXPECT_EQ(asked("Magnetometer"), "turn 0-99 turn 100-249 turn 250-399 end turns:3 walk ");
    EXPECT_EQ(asked("Gyroscope_2"), "end ");
}

}  // namespace tavocal::test
