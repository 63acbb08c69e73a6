#include "sampling/UserPacedSteps.h"

#include <gtest/gtest.h>

#include "base/Failures.h"
#include "sampling/FakeRunParts.h"
#include "support/MessageOf.h"

namespace tavocal::test {

TEST(UserPacedSteps, EachMovementIsCheckedAtItsKey) {
    // Three turns and a walk, with 100, 250, 400 and 600 samples stored at the keys: what was asked
    // of the sensor, what was printed, and the failure.
    const auto walkThrough = [](const std::string& sensorName, const std::string& badCall) {
        FakeSensor sensor(sensorName);
        sensor.badCall = badCall;
        const std::string printed = printedBy([&] {
            platform::Console::instance().write(messageOf<CalibrationException>([&] {
                UserPacedSteps steps;
                for (const std::size_t stored : {100U, 250U, 400U, 600U}) {
                    steps.finish(sensor, stored, stored == 400);
                }
            }));
        });
        return sensor.calls + "\n" + printed;
    };
    const std::string key = "\nUser pressed to signal end";
    const std::string abnormal =
        " phase in mag environment test is abnormal. Make sure the movement instructions were "
        "followed.";
    const std::string turns = "turn 0-99 turn 100-249 turn 250-399 end turns:3 ";
    EXPECT_EQ(walkThrough("Magnetometer", ""),
              turns + "walk " + key + key + key + key + "\nno failure");
    EXPECT_EQ(walkThrough("Magnetometer", "turn 0-99"),
              "turn 0-99 \nData collected during rotation" + abnormal);
    EXPECT_EQ(walkThrough("Magnetometer", "turns:3"),
              turns + key + key + key + "\nData collected during three rotation" + abnormal);
    EXPECT_EQ(walkThrough("Magnetometer", "walk"),
              turns + "walk " + key + key + key + "\nData collected during translation" + abnormal);
    // Another indicator is asked for nothing.
    EXPECT_EQ(walkThrough("Gyroscope_2", "walk"), "end " + key + key + key + key + "\nno failure");
}

}  // namespace tavocal::test
