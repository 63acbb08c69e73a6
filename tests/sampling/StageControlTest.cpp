#include "sampling/StageControl.h"

#include <gtest/gtest.h>

#include <thread>

#include "base/Failures.h"
#include "support/MessageOf.h"

namespace tavocal::test {
namespace {

const std::string kNoSamples = "DATA COLLECTION FAILED\n Failed to get samples from FW";

class StageControlTest : public testing::Test {
  protected:
    std::string waited() {
        return messageOf<CalibrationException>([this] { stages.waitForStage(); });
    }
    std::string finishedByKey() {
        return messageOf<CalibrationException>([this] { stages.finishUserStage(); });
    }

    StageControl stages;
};

TEST_F(StageControlTest, StageIsWaitedForOrHasEndedBefore) {
    stages.stageDone(true);
    EXPECT_EQ(waited(), kNoFailure);
    EXPECT_TRUE(stages.status());
    std::thread worker([this] { stages.stageDone(true); });
    EXPECT_EQ(waited(), kNoFailure);
    worker.join();
}

TEST_F(StageControlTest, EndCountsForOneWaitAndNotBeyondAStart) {
    const std::string timeout =
        "DATA COLLECTION FAILED\n Timeout, failed to get stable samples or to detect motion of the "
        "required sensors";
    EXPECT_EQ(std::exchange(stages.stageTimeout, std::chrono::milliseconds(1)).count(), 60000);
    stages.stageDone(true);
    EXPECT_EQ(waited(), kNoFailure);
    EXPECT_EQ(waited(), timeout);
    EXPECT_FALSE(stages.status());
    stages.stageDone(true);
    stages.reset();
    EXPECT_EQ(waited(), timeout);
}

TEST_F(StageControlTest, FirstReasonCountsAndNoSuccessCoversIt) {
    stages.stageDone(false);
    EXPECT_EQ(waited(), kNoSamples);
    StageControl other;
    other.stageFailed("first");
    other.stageFailed("second");
    other.stageDone(true);
    EXPECT_EQ(messageOf<CalibrationException>([&] { other.waitForStage(); }), "first");
    other.stageDone(true);
    other.waitForStage();
}

TEST_F(StageControlTest, OnlyFailuresCountWhileTheKeyIsWaitedFor) {
    stages.beginUserStage();
    EXPECT_EQ(finishedByKey(), kNoFailure);
    stages.stageFailed("between two steps");
    stages.beginUserStage();
    EXPECT_EQ(finishedByKey(), "between two steps");
}

}  // namespace
}  // namespace tavocal::test
