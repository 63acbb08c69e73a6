#include "process/PreTestProcess.h"

#include <gtest/gtest.h>

#include "numerics/Sample.h"
#include "sensors/Sensor.h"
#include "sensors/SensorTypes.h"

namespace tavocal::test {
namespace {

TEST(PreTestProcess, ClosesTheTurnsInItsThirdStep) {
    PreTestProcess process;
    EXPECT_EQ(process.runType, RunCommand::MagEnvironmentTest);
    EXPECT_EQ(process.segmentTimes, std::vector<double>(8, 0.0));
    EXPECT_TRUE(process.isUserPaced() && process.needsUserInput());
    for (; process.currentStep < 4; ++process.currentStep) {
        process.getInstructions(false);
        EXPECT_EQ(process.isThreeRotationsStage(), process.currentStep == 2);
    }
}

TEST(PreTestProcess, WatchesTheMagnetometerOfferedLast) {
    PreTestProcess process;
    const auto first = makeSensor({kMagnetometerType, 0, 0, 1, kStaticFlag});
    const auto second = makeSensor({kMagnetometerType, 0, 0, 0, kStaticFlag});
    EXPECT_EQ(process.requiredIndicatorTypes(), std::vector<std::string>{"Magnetometer"});
    EXPECT_FALSE(process.isStageIndicator(*first));
    EXPECT_TRUE(process.setStageIndicator(first));
    EXPECT_TRUE(process.isStageIndicator(*first));
    EXPECT_TRUE(process.setStageIndicator(second));
    EXPECT_FALSE(process.isStageIndicator(*first));
    EXPECT_TRUE(process.isStageIndicator(*makeSensor(second->getLuid())));
    process.CalibrationControl({1e6, {1.0, 2.0, 3.0}});
    EXPECT_FALSE(process.canMoveNext);
    process.allowNextStage();
    EXPECT_TRUE(process.canMoveNext);
}

}  // namespace
}  // namespace tavocal::test
