#include "sampling/UserPacedSteps.h"

#include <algorithm>

#include "sampling/FakeRunParts.h"

namespace tavocal::test {

TEST(UserPacedSteps, EachMovementIsCheckedAtItsKey) {
    // Three turns and a walk, with 100, 250, 400 and 600 samples stored at the keys: what was asked
    // of the sensor, what was printed, and the failure.
    const auto walkThrough = [](const std::string& sensorName, const std::string& badCall) {
        FakeSensor sensor(sensorName);
        sensor.badCall = badCall;
        std::string failure;
        const std::string printed = printedBy([&] {
            failure = failureOf([&] {
                UserPacedSteps steps;
                for (const std::size_t stored : {100U, 250U, 400U, 600U}) {
                    steps.finish(sensor, stored, stored == 400);
                }
            });
        });
        const auto keys = std::count(printed.begin(), printed.end(), 'U');
        return sensor.calls + std::to_string(keys) + " " + failure.substr(0, 33);
    };
    const std::string turns = "turn 0-99 turn 100-249 turn 250-399 end turns:3 ";
    EXPECT_EQ(walkThrough("Magnetometer", ""), turns + "walk 4 no failure");
    EXPECT_EQ(walkThrough("Magnetometer", "turn 0-99"),
              "turn 0-99 0 Data collected during rotation ph");
    EXPECT_EQ(walkThrough("Magnetometer", "turns:3"),
              turns + "3 Data collected during three rotat");
    EXPECT_EQ(walkThrough("Magnetometer", "walk"),
              turns + "walk 3 Data collected during translation");
    // Another indicator is asked for nothing.
    EXPECT_EQ(walkThrough("Gyroscope_2", "walk"), "end 4 no failure");
}

}  // namespace tavocal::test
