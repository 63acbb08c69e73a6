#include "sampling/UserPacedSteps.h"

#include "sampling/FakeRunParts.h"

namespace tavocal::test {

TEST(UserPacedSteps, EachMovementIsCheckedAtItsKey) {
    // Three turns and a walk, with 100, 250, 400 and 600 samples stored at the keys: what was asked
    // of the sensor, and the failure.
    const auto walkThrough = [](const std::string& sensorName, const std::string& badCall) {
        FakeSensor sensor(sensorName);
        sensor.badCall = badCall;
        UserPacedSteps steps;
        const std::string failure = failureOf([&] {
            for (const std::size_t stored : {100U, 250U, 400U, 600U}) {
                steps.finish(sensor, stored, stored == 400);
            }
        });
        return sensor.calls + failure.substr(0, 33);
    };
    const std::string turns = "turn 0-99 turn 100-249 turn 250-399 end turns:3 ";
    EXPECT_EQ(walkThrough("Magnetometer", ""), turns + "walk no failure");
    EXPECT_EQ(walkThrough("Magnetometer", "turn 0-99"),
              "turn 0-99 Data collected during rotation ph");
    EXPECT_EQ(walkThrough("Magnetometer", "turns:3"), turns + "Data collected during three rotat");
    EXPECT_EQ(walkThrough("Magnetometer", "walk"),
              turns + "walk Data collected during translation");
    // Another indicator is asked for nothing.
    EXPECT_EQ(walkThrough("Gyroscope_2", "walk"), "end no failure");
}

}  // namespace tavocal::test
