#include "process/PreTestProcess.h"

#include <gtest/gtest.h>

#include "sensors/SensorFactory.h"
#include "sensors/model/Sensor.h"
#include "vocabulary/SensorTypes.h"

namespace tavocal::test {
namespace {

TEST(PreTestProcess, WatchesTheMagnetometerOfferedLast) {
    PreTestProcess process;
    const auto first = makeSensor({kMagnetometerType, 0, 0, 1, kStaticFlag});
    const auto second = makeSensor({kMagnetometerType, 0, 0, 0, kStaticFlag});
    EXPECT_EQ(process.segmentTimes, std::vector<double>(8, 0.0));
    EXPECT_FALSE(process.isStageIndicator(*first));
    EXPECT_TRUE(process.setStageIndicator(first));
    EXPECT_TRUE(process.setStageIndicator(second));
    EXPECT_FALSE(process.isStageIndicator(*first));
    EXPECT_TRUE(process.isStageIndicator(*makeSensor(second->getLuid())));
}

}  // namespace
}  // namespace tavocal::test
